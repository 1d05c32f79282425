#include "Utility/LaunchRules.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace LaunchRules;

TEST(LaunchRules, RedirectionByText)
{
    const QString signedOut = u"com.example.SignedOut"_s;
    const std::pair<QString, Redirection> rows[] = {
        {signedOut, Redirection::ResetThenPreferences}, {u"sendErrorReport"_s, Redirection::ErrorReport},
        {u"ActivityLogs"_s, Redirection::ActivityLogs}, {u"ViewExclude"_s, Redirection::Preferences},
        {u"activitylogs"_s, Redirection::Preferences},  {u"ActivityLogs\n"_s, Redirection::Preferences},
        {QString(), Redirection::Preferences},
    };
    for (const auto &[text, expected] : rows)
        EXPECT_EQ(launchRedirection(text, signedOut), expected) << text.toStdString();
    EXPECT_EQ(preferencesRequest(u"sendErrorReport"_s), Redirection::ErrorReport);
    EXPECT_EQ(preferencesRequest(u"ActivityLogs"_s), Redirection::Preferences);
    const auto request = viewRequest(u"Settings"_s);
    ASSERT_TRUE(request);
    EXPECT_EQ(request->name, u"LaunchSettings"_s);
    EXPECT_EQ(request->userInfo, (QVariantMap{{u"CVLaunchType"_s, u"Settings"_s}}));
    EXPECT_FALSE(viewRequest(u"settings"_s));
}

TEST(LaunchRules, VersionsThatUpdateThemselves)
{
    for (const QString &version : {u"9.2.1"_s, u"9.2.0"_s, u"9.001"_s})
        EXPECT_TRUE(versionRunsAutomaticUpdates(version)) << version.toStdString();
    for (const std::optional<QString> &version : {std::optional(u"9.2.00"_s), {u"9.100"_s}, {}})
        EXPECT_FALSE(versionRunsAutomaticUpdates(version)) << version.value_or(u"none"_s).toStdString();
}

TEST(LaunchRules, LoginItemByTheUsersSetting)
{
    const auto settings = [](const QVariant &value) {
        return QVariantMap{{u"mona"_s, QVariantMap{{u"launchOnStartup"_s, value}}}};
    };
    const QString mona = u"mona"_s;
    const std::tuple<const char *, std::optional<QVariantMap>, std::optional<QString>, LoginItem> rows[] = {
        {"one", settings(1LL), mona, LoginItem::Add},
        {"zero", settings(0LL), mona, LoginItem::Remove},
        {"switch on", settings(true), mona, LoginItem::Add},
        {"real below one", settings(0.5), mona, LoginItem::Remove},
        {"text", settings(u"1"_s), mona, LoginItem::Add},
        {"no number", settings(u"yes"_s), mona, LoginItem::Remove},
        {"no such key", QVariantMap{{mona, QVariantMap()}}, mona, LoginItem::Remove},
        {"another user", settings(1LL), u"ben"_s, LoginItem::Leave},
        {"nobody", settings(1LL), std::nullopt, LoginItem::Leave},
        {"a user without a name", settings(1LL), QString(), LoginItem::Leave},
        {"no settings", std::nullopt, mona, LoginItem::Leave},
        {"no dictionary", QVariantMap{{mona, 1LL}}, mona, LoginItem::Leave},
    };
    for (const auto &[name, stored, user, expected] : rows)
        EXPECT_EQ(loginItem(stored, user), expected) << name;
}

TEST(LaunchRules, UpdateFolderAtAStart)
{
    const QString root = u"/h/Corvane/"_s;
    const std::tuple<QString, bool, bool, bool> rows[] = {
        {u"Corvane"_s, true, false, true},   // left over
        {u"Corvane"_s, true, true, false},   // in use
        {u"Corvane"_s, false, false, false}, // not there
        // the root folder itself, and what lies outside
        {QString(), true, false, false},
        {u"."_s, true, false, false},
        {u".."_s, true, false, false},
        {u"../Corvane2"_s, true, false, false},
    };
    for (const auto &[applicationName, folderExists, checkFileExists, removed] : rows) {
        const QString folder = updateFolder(root, applicationName);
        EXPECT_EQ(removesUpdateFolder({root, folder, folderExists, checkFileExists}), removed)
            << applicationName.toStdString();
    }
}

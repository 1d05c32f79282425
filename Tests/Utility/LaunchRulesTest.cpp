#include "Utility/LaunchRules.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace LaunchRules;

TEST(LaunchRules, RedirectionByText)
{
    const QString signedOut = u"com.example.SignedOut"_s;
    const std::tuple<const char *, QString, Redirection> rows[] = {
        {"signed out", signedOut, Redirection::ResetThenPreferences},
        {"error report", u"sendErrorReport"_s, Redirection::ErrorReport},
        {"logs", u"ActivityLogs"_s, Redirection::ActivityLogs},
        {"exclusions", u"ViewExclude"_s, Redirection::Preferences},
        {"unknown", u"whatever"_s, Redirection::Preferences},
        {"empty", QString(), Redirection::Preferences},
        {"another case", u"activitylogs"_s, Redirection::Preferences},
        {"with a line end", u"ActivityLogs\n"_s, Redirection::Preferences},
    };
    for (const auto &[name, text, expected] : rows)
        EXPECT_EQ(launchRedirection(text, signedOut), expected) << name;
    EXPECT_EQ(preferencesRequest(u"sendErrorReport"_s), Redirection::ErrorReport);
    EXPECT_EQ(preferencesRequest(u"ActivityLogs"_s), Redirection::Preferences);
}

TEST(LaunchRules, ViewsOfTheMainApplication)
{
    for (const QString &type : {u"ActivityLogs"_s, u"ViewScheduleJobs"_s, u"Settings"_s}) {
        const auto request = viewRequest(type);
        ASSERT_TRUE(request) << type.toStdString();
        EXPECT_EQ(request->name, QString(u"Launch"_s + type));
        EXPECT_EQ(request->userInfo, (QVariantMap{{u"CVLaunchType"_s, type}}));
    }
    EXPECT_FALSE(viewRequest(QString()));
    EXPECT_FALSE(viewRequest(u"settings"_s));
}

TEST(LaunchRules, VersionsThatUpdateThemselves)
{
    EXPECT_TRUE(versionRunsAutomaticUpdates(u"9.2.1"_s));
    EXPECT_TRUE(versionRunsAutomaticUpdates(u"9.2.0"_s));
    EXPECT_TRUE(versionRunsAutomaticUpdates(u"9.001"_s));
    EXPECT_FALSE(versionRunsAutomaticUpdates(u"9.2.00"_s));
    EXPECT_FALSE(versionRunsAutomaticUpdates(u"9.100"_s));
    EXPECT_FALSE(versionRunsAutomaticUpdates(std::nullopt));
}

TEST(LaunchRules, LoginItemByTheUsersSetting)
{
    const auto settings = [](const QVariant &value) {
        return QVariantMap{{u"mona"_s, QVariantMap{{u"launchOnStartup"_s, value}}}};
    };
    const QString mona = u"mona"_s;
    const std::tuple<const char *, std::optional<QVariantMap>, std::optional<QString>, bool> rows[] = {
        {"one", settings(1LL), mona, true},
        {"another number", settings(-2LL), mona, true},
        {"zero", settings(0LL), mona, false},
        {"switch on", settings(true), mona, true},
        {"switch off", settings(false), mona, false},
        {"real", settings(1.0), mona, true},
        {"real below one", settings(0.5), mona, false},
        {"text", settings(u"1"_s), mona, true},
        {"no number", settings(u"yes"_s), mona, false},
        {"another user", settings(1LL), u"ben"_s, false},
        {"no user", settings(1LL), std::nullopt, false},
        {"no settings", std::nullopt, mona, false},
        {"no dictionary", QVariantMap{{mona, 1LL}}, mona, false},
        {"no such key", QVariantMap{{mona, QVariantMap()}}, mona, false},
    };
    for (const auto &[name, stored, user, expected] : rows)
        EXPECT_EQ(launchesAtLogin(stored, user), expected) << name;
}

TEST(LaunchRules, UpdateFolderAtAStart)
{
    const QString root = u"/h/Corvane/"_s;
    const std::tuple<const char *, QString, bool, bool, bool> rows[] = {
        {"left over", u"Corvane"_s, true, false, true},
        {"in use", u"Corvane"_s, true, true, false},
        {"not there", u"Corvane"_s, false, false, false},
        {"the root folder itself", QString(), true, false, false},
        {"the root folder by a dot", u"."_s, true, false, false},
        {"outside", u"../Corvane2"_s, true, false, false},
        {"above", u".."_s, true, false, false},
    };
    for (const auto &[name, applicationName, folderExists, checkFileExists, removed] : rows) {
        SCOPED_TRACE(name);
        const QString folder = updateFolder(root, applicationName);
        EXPECT_EQ(removesUpdateFolder({root, folder, folderExists, checkFileExists}), removed);
    }
    EXPECT_EQ(updateFolder(root, u"Corvane"_s), u"/h/Corvane/Corvane"_s);
}

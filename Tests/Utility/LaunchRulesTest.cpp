#include "Utility/LaunchRules.h"
#include "Tests/Support/PrintQt.h"

#include <gtest/gtest.h>

using namespace LaunchRules;

TEST(LaunchRules, RedirectionByText)
{
    const QString signedOut = QStringLiteral("com.example.SignedOut");
    const struct {
        const char *name;
        QString text;
        Redirection expected;
    } rows[] = {
        {"signed out", signedOut, Redirection::ResetThenPreferences},
        {"error report", QStringLiteral("sendErrorReport"), Redirection::ErrorReport},
        {"logs", QStringLiteral("ActivityLogs"), Redirection::ActivityLogs},
        {"exclusions", QStringLiteral("ViewExclude"), Redirection::Preferences},
        {"unknown", QStringLiteral("whatever"), Redirection::Preferences},
        {"empty", QString(), Redirection::Preferences},
        {"another case", QStringLiteral("activitylogs"), Redirection::Preferences},
        {"with a line end", QStringLiteral("ActivityLogs\n"), Redirection::Preferences},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(launchRedirection(row.text, signedOut), row.expected);
    }
    EXPECT_EQ(preferencesRequest(QStringLiteral("sendErrorReport")), Redirection::ErrorReport);
    EXPECT_EQ(preferencesRequest(QStringLiteral("ActivityLogs")), Redirection::Preferences);
}

TEST(LaunchRules, ViewsOfTheMainApplication)
{
    const struct {
        QString type, notification;
    } rows[] = {
        {QStringLiteral("ActivityLogs"), QStringLiteral("LaunchActivityLogs")},
        {QStringLiteral("ViewScheduleJobs"), QStringLiteral("LaunchViewScheduleJobs")},
        {QStringLiteral("Settings"), QStringLiteral("LaunchSettings")},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.type.toStdString());
        const auto request = viewRequest(row.type);
        ASSERT_TRUE(request);
        EXPECT_EQ(request->name, row.notification);
        EXPECT_EQ(request->userInfo, (QVariantMap{{QStringLiteral("CVLaunchType"), row.type}}));
    }
    EXPECT_FALSE(viewRequest(QString()));
    EXPECT_FALSE(viewRequest(QStringLiteral("settings")));
}

TEST(LaunchRules, VersionsThatUpdateThemselves)
{
    EXPECT_TRUE(versionRunsAutomaticUpdates(QStringLiteral("9.2.1")));
    EXPECT_TRUE(versionRunsAutomaticUpdates(QStringLiteral("9.2.0")));
    EXPECT_TRUE(versionRunsAutomaticUpdates(QStringLiteral("9.001")));
    EXPECT_FALSE(versionRunsAutomaticUpdates(QStringLiteral("9.2.00")));
    EXPECT_FALSE(versionRunsAutomaticUpdates(QStringLiteral("9.100")));
    EXPECT_FALSE(versionRunsAutomaticUpdates(std::nullopt));
}

TEST(LaunchRules, LoginItemByTheUsersSetting)
{
    const auto settings = [](const QVariant &value) {
        return QVariantMap{{QStringLiteral("mona"), QVariantMap{{QStringLiteral("launchOnStartup"), value}}}};
    };
    const QString mona = QStringLiteral("mona");
    const struct {
        const char *name;
        std::optional<QVariantMap> settings;
        std::optional<QString> user;
        bool expected;
    } rows[] = {
        {"one", settings(1LL), mona, true},
        {"another number", settings(-2LL), mona, true},
        {"zero", settings(0LL), mona, false},
        {"switch on", settings(true), mona, true},
        {"switch off", settings(false), mona, false},
        {"real", settings(1.0), mona, true},
        {"real below one", settings(0.5), mona, false},
        {"text", settings(QStringLiteral("1")), mona, true},
        {"no number", settings(QStringLiteral("yes")), mona, false},
        {"another user", settings(1LL), QStringLiteral("ben"), false},
        {"no user", settings(1LL), std::nullopt, false},
        {"no settings", std::nullopt, mona, false},
        {"no dictionary", QVariantMap{{mona, 1LL}}, mona, false},
        {"no such key", QVariantMap{{mona, QVariantMap()}}, mona, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(launchesAtLogin(row.settings, row.user), row.expected);
    }
}

TEST(LaunchRules, UpdateFolderAtAStart)
{
    const QString root = QStringLiteral("/h/Corvane/");
    const struct {
        const char *name;
        QString applicationName;
        bool folderExists, checkFileExists, removed;
    } rows[] = {
        {"left over", QStringLiteral("Corvane"), true, false, true},
        {"in use", QStringLiteral("Corvane"), true, true, false},
        {"not there", QStringLiteral("Corvane"), false, false, false},
        {"the root folder itself", QString(), true, false, false},
        {"the root folder by a dot", QStringLiteral("."), true, false, false},
        {"outside", QStringLiteral("../Corvane2"), true, false, false},
        {"above", QStringLiteral(".."), true, false, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QString folder = updateFolder(root, row.applicationName);
        EXPECT_EQ(removesUpdateFolder({root, folder, row.folderExists, row.checkFileExists}), row.removed);
    }
    EXPECT_EQ(updateFolder(root, QStringLiteral("Corvane")), QStringLiteral("/h/Corvane/Corvane"));
}

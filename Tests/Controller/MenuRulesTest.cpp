#include "Source/Controller/MenuRules.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <gtest/gtest.h>

using MenuRules::MenuInputs;
using MenuRules::RunningJob;

namespace
{
class MenuRulesTest : public testing::Test
{
protected:
    const TemporaryHome m_home;
};

const QString enableAll = QStringLiteral("Enable all scheduled jobs");
const QString disableAll = QStringLiteral("Disable all scheduled jobs");
} // namespace

TEST_F(MenuRulesTest, StartFindsTheSwitchByAZeroAnywhereAndAnOpeningByTheWholeText)
{
    const struct {
        const char *name;
        std::optional<QString> text;
        bool offAtStart;
        std::optional<bool> offAtOpening; ///< none: nothing is touched
    } rows[] = {
        {"disabled", QStringLiteral("0"), true, true},     {"line feed", QStringLiteral("0\n"), true, false},
        {"inside", QStringLiteral("10"), true, false},     {"enabled", QStringLiteral("1"), false, false},
        {"job paused", QStringLiteral("2"), false, false}, {"empty", QString(), false, false},
        {"unreadable", std::nullopt, false, std::nullopt},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const MenuState start = MenuRules::titles(QStringLiteral("Corvane"), row.text);
        EXPECT_EQ(start[MenuItem::SwitchJobs].title, row.offAtStart ? enableAll : disableAll);
        EXPECT_EQ(start[MenuItem::ManageJobs].enabled, !row.offAtStart);

        const MenuState opening = MenuRules::needsUpdate(QStringLiteral("Corvane"), row.text);
        if (!row.offAtOpening) {
            EXPECT_EQ(opening, MenuState());
            continue;
        }
        EXPECT_EQ(opening[MenuItem::SwitchJobs].title, *row.offAtOpening ? enableAll : disableAll);
        EXPECT_EQ(opening[MenuItem::ManageJobs].title, QStringLiteral("Manage all scheduled jobs"));
        EXPECT_EQ(opening[MenuItem::ManageJobs].enabled, !*row.offAtOpening);
        EXPECT_EQ(opening[MenuItem::WebAccess].title, QStringLiteral("Access Corvane web"));
        EXPECT_EQ(opening[MenuItem::WebAccess].toolTip,
                  QStringLiteral("Access, Restore, Share files / folders, etc via Web"));
    }
}

TEST_F(MenuRulesTest, ClickOnTheSwitchGoesByTheTitleThatItShows)
{
    const auto disable = MenuRules::jobSwitchClick(disableAll);
    EXPECT_EQ(disable.word, QStringLiteral("0"));
    EXPECT_EQ(disable.nextTitle, enableAll);
    for (const QString &title : {enableAll, QStringLiteral("Anything")}) {
        EXPECT_EQ(MenuRules::jobSwitchClick(title).word, QStringLiteral("1"));
        EXPECT_EQ(MenuRules::jobSwitchClick(title).nextTitle, disableAll);
    }
}

TEST_F(MenuRulesTest, StartOffersToPauseOrToResumeByTheSwitch)
{
    const struct {
        const char *name;
        std::optional<QString> text, pauseTitle, pauseToolTip, switchTitle;
    } rows[] = {
        {"paused", QStringLiteral("2"), QStringLiteral("Resume the scheduled job"),
         QStringLiteral("Scheduled backup is paused."), std::nullopt},
        {"disabled", QStringLiteral("0"), std::nullopt, std::nullopt, enableAll},
        {"disabled, with a line feed", QStringLiteral("0\n"), QStringLiteral("Pause the scheduled job"),
         QStringLiteral("Corvane"), std::nullopt},
        {"no file", std::nullopt, QStringLiteral("Pause the scheduled job"), QStringLiteral("Corvane"),
         std::nullopt},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        MenuInputs in;
        in.appFullName = QStringLiteral("Corvane");
        in.switchText = row.text;
        const MenuState menu = MenuRules::atStart(in).items;
        EXPECT_EQ(menu[MenuItem::PauseJob].title, row.pauseTitle);
        EXPECT_EQ(menu[MenuItem::PauseJob].toolTip, row.pauseToolTip);
        EXPECT_EQ(menu[MenuItem::SwitchJobs].title, row.switchTitle);
    }
}

TEST_F(MenuRulesTest, StartOfADeduplicatingOrUnknownAccountHidesTheEngineFeatures)
{
    for (const auto &dedup : {std::optional(QStringLiteral("off")), std::optional(QStringLiteral("on")),
                              std::optional<QString>()}) {
        SCOPED_TRACE(dedup.value_or(QStringLiteral("none")).toStdString());
        MenuInputs in;
        in.dedup = dedup;
        in.operationRuns = true; // a start offers no progress, whatever runs
        const MenuState menu = MenuRules::atStart(in).items;
        const std::optional<bool> hidden = dedup == QStringLiteral("off") ? std::nullopt : std::optional(true);
        for (const MenuItem item : {MenuItem::Separator6, MenuItem::Protection, MenuItem::RemoteManagement})
            EXPECT_EQ(menu[item].hidden, hidden);
        EXPECT_EQ(menu[MenuItem::Separator1].hidden, true);
        EXPECT_EQ(menu[MenuItem::UserLine].hidden, true);
        EXPECT_EQ(menu[MenuItem::ShowProgress].enabled, false);
    }
}

TEST_F(MenuRulesTest, PartnerSeesNoUpgradeAndBecomesNoSubAccount)
{
    const struct {
        const char *name;
        std::optional<QString> type;
        bool partner, upgradeHidden;
        std::optional<bool> isSubAccount;
    } rows[] = {
        {"sub-account", QStringLiteral("true"), false, true, true},
        {"sub-account of a partner", QStringLiteral("true"), true, true, true},
        {"partner", QStringLiteral("false"), true, true, std::nullopt},
        {"owner", QStringLiteral("false"), false, false, false},
        {"no file", std::nullopt, false, false, false},
        {"line feed", QStringLiteral("true\n"), false, false, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        MenuState menu;
        EXPECT_EQ(MenuRules::setAccountItems(menu, row.type, row.partner), row.isSubAccount);
        EXPECT_EQ(menu[MenuItem::Upgrade].hidden, row.upgradeHidden);
        EXPECT_EQ(menu[MenuItem::UpgradeSeparator].hidden, row.upgradeHidden);
    }
}

TEST_F(MenuRulesTest, ProgressIsOfferedUnlessTheMainApplicationShowsIt)
{
    const struct {
        const char *name;
        bool runs, mainApplication, scheduled, window, progress, companion;
    } rows[] = {
        {"nothing runs", false, false, false, false, false, false},
        {"flag without an operation", false, false, true, false, false, false},
        {"scheduled", true, false, true, false, true, true},
        {"scheduled, window seen", true, false, true, true, true, false},
        {"interactive, window seen", true, false, false, true, true, true},
        {"main application runs", true, true, true, false, false, false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        MenuInputs in;
        in.operationRuns = row.runs;
        in.mainApplicationRuns = row.mainApplication;
        in.scheduleBackupRunning = row.scheduled;
        in.progressWindowVisible = row.window;
        const MenuState opening = MenuRules::atOpening(in).items;
        EXPECT_EQ(opening[MenuItem::ShowProgress].enabled, row.progress);
        EXPECT_EQ(opening[MenuItem::ProgressCompanion].enabled, row.companion);

        const auto signIn = MenuRules::atSignIn(in);
        EXPECT_EQ(signIn.items[MenuItem::ProgressCompanion].enabled,
                  row.progress); // it doesn't ask for the window
        EXPECT_EQ(signIn.closesProgressWindow, !row.progress);
    }
}

TEST_F(MenuRulesTest, SignInLeavesWhatOnlyAnOpeningDecides)
{
    MenuInputs in;
    in.recordPresent = true;
    in.dedup = QStringLiteral("on");
    in.remote = {.hasUser = true, .mobileOnly = true, .word = QStringLiteral("0")};
    in.runningJob = RunningJob::Backup;
    const MenuState signIn = MenuRules::atSignIn(in).items;
    EXPECT_EQ(signIn[MenuItem::RemoteManagement].title, QStringLiteral("Disable Web Access"));
    EXPECT_EQ(signIn[MenuItem::RemoteManagement].hidden, true);
    EXPECT_EQ(signIn[MenuItem::Protection].hidden, true);
    EXPECT_EQ(signIn[MenuItem::Protection].present, std::nullopt);
    EXPECT_EQ(signIn[MenuItem::StopJob].enabled, std::nullopt);
    EXPECT_EQ(signIn[MenuItem::Scheduler].enabled, true);

    const MenuState opening = MenuRules::atOpening(in).items;
    EXPECT_EQ(opening[MenuItem::RemoteManagement].title, QStringLiteral("Enable Web Access"));
    EXPECT_EQ(opening[MenuItem::RemoteManagement].hidden, false);
    EXPECT_EQ(opening[MenuItem::Protection].present, false);
    EXPECT_EQ(opening[MenuItem::StopJob].enabled, true);
}

TEST_F(MenuRulesTest, ProtectionIsTickedByItsWordAlone)
{
    const std::pair<std::optional<QString>, bool> rows[] = {{QStringLiteral("1"), true},
                                                            {QStringLiteral("0"), false},
                                                            {QStringLiteral("true"), false},
                                                            {std::nullopt, false}};
    for (const auto &[word, ticked] : rows) {
        SCOPED_TRACE(word.value_or(QStringLiteral("none")).toStdString());
        MenuInputs in;
        in.dedup = QStringLiteral("on"); // made anew: the tick comes with it
        in.engineUser = true;
        in.protectionWord = word;
        EXPECT_EQ(MenuRules::atOpening(in).items[MenuItem::Protection].ticked, ticked);
        EXPECT_EQ(MenuRules::protectionAfterSettings(true, word)[MenuItem::Protection].ticked, ticked);
        EXPECT_EQ(MenuRules::protectionAfterSettings(false, word), MenuState());
    }
}

TEST_F(MenuRulesTest, SyncStatusLineIsShortAndSilentAtRest)
{
    const QString exactly35(35, u'a');
    const struct {
        const char *name;
        std::optional<QString> line, wanted; ///< wanted: none where the line is hidden
    } rows[] = {
        {"none", std::nullopt, std::nullopt},
        {"empty", QString(), std::nullopt},
        {"empty first line", QStringLiteral("\nmore"), std::nullopt},
        {"up to date", QStringLiteral("All files are up to date"), std::nullopt},
        {"paused", QStringLiteral("Paused\nmore"), std::nullopt},
        {"first line", QStringLiteral("Uploading a.txt\n3 left"), QStringLiteral("Uploading a.txt")},
        {"35 characters", exactly35, exactly35},
        {"36 characters", exactly35 + u'b', exactly35 + QStringLiteral("...")},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        MenuState menu;
        MenuRules::setCloudDriveItems(menu, {.enabled = true, .paused = std::nullopt, .statusLine = row.line},
                                      false);
        EXPECT_EQ(menu[MenuItem::SyncStatus].hidden, !row.wanted);
        EXPECT_EQ(menu[MenuItem::SyncStatus].title, row.wanted);
        EXPECT_EQ(menu[MenuItem::PauseSync], MenuItemChange());
    }
}

#include "Source/Controller/MenuRules.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using MenuRules::MenuInputs;
using MenuRules::RunningJob;

namespace
{
class MenuRulesTest : public testing::Test
{
protected:
    const TemporaryHome m_home;
};

const QString enableAll = u"Enable all scheduled jobs"_s;
const QString disableAll = u"Disable all scheduled jobs"_s;
} // namespace

TEST_F(MenuRulesTest, TheSwitchIsFoundByAZeroAnywhereAtAStartAndByTheWholeTextAtAnOpening)
{
    const QString pause = u"Pause the scheduled job"_s;
    const struct {
        const char *name;
        std::optional<QString> text;
        bool offAtStart;
        std::optional<bool> offAtOpening;  ///< none: nothing is touched
        std::optional<QString> pauseTitle; ///< at the start
    } rows[] = {
        {"disabled", u"0"_s, true, true, {}},
        {"line feed", u"0\n"_s, true, false, pause},
        {"inside", u"10"_s, true, false, pause},
        {"enabled", u"1"_s, false, false, pause},
        {"job paused", u"2"_s, false, false, u"Resume the scheduled job"_s},
        {"empty", QString(), false, false, pause},
        {"unreadable", std::nullopt, false, std::nullopt, pause},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const MenuState start = MenuRules::titles(u"Corvane"_s, row.text);
        EXPECT_EQ(start[MenuItem::SwitchJobs].title, row.offAtStart ? enableAll : disableAll);
        EXPECT_EQ(start[MenuItem::ManageJobs].enabled, !row.offAtStart);
        MenuInputs in;
        in.appFullName = u"Corvane"_s;
        in.switchText = row.text;
        const MenuState items = MenuRules::atStart(in).items;
        EXPECT_EQ(items[MenuItem::PauseJob].title, row.pauseTitle);
        const QString tip = row.text == u"2"_s ? u"Scheduled backup is paused."_s : u"Corvane"_s;
        EXPECT_EQ(items[MenuItem::PauseJob].toolTip, row.pauseTitle ? std::optional(tip) : std::nullopt);
        EXPECT_EQ(items[MenuItem::SwitchJobs].title, row.pauseTitle ? std::nullopt : std::optional(enableAll));

        const MenuState opening = MenuRules::needsUpdate(u"Corvane"_s, row.text);
        if (!row.offAtOpening) {
            EXPECT_EQ(opening, MenuState());
            continue;
        }
        EXPECT_EQ(opening[MenuItem::SwitchJobs].title, *row.offAtOpening ? enableAll : disableAll);
        EXPECT_EQ(opening[MenuItem::ManageJobs].title, u"Manage all scheduled jobs"_s);
        EXPECT_EQ(opening[MenuItem::ManageJobs].enabled, !*row.offAtOpening);
        EXPECT_EQ(opening[MenuItem::WebAccess].title, u"Access Corvane web"_s);
        EXPECT_EQ(opening[MenuItem::WebAccess].toolTip,
                  u"Access, Restore, Share files / folders, etc via Web"_s);
    }
}

TEST_F(MenuRulesTest, StartOfADeduplicatingOrUnknownAccountHidesTheEngineFeatures)
{
    for (const auto &dedup : {std::optional(u"off"_s), std::optional(u"on"_s), std::optional<QString>()}) {
        SCOPED_TRACE(dedup.value_or(u"none"_s).toStdString());
        MenuInputs in;
        in.dedup = dedup;
        in.operationRuns = true; // a start offers no progress, whatever runs
        const MenuState menu = MenuRules::atStart(in).items;
        const std::optional<bool> hidden = dedup == u"off"_s ? std::nullopt : std::optional(true);
        for (const MenuItem item : {MenuItem::Separator6, MenuItem::Protection, MenuItem::RemoteManagement})
            EXPECT_EQ(menu[item].hidden, hidden);
        EXPECT_EQ(menu[MenuItem::Separator1].hidden, true);
        EXPECT_EQ(menu[MenuItem::UserLine].hidden, true);
        EXPECT_EQ(menu[MenuItem::ShowProgress].enabled, false);
    }
}

TEST_F(MenuRulesTest, PartnerSeesNoUpgradeAndBecomesNoSubAccount)
{
    const std::tuple<const char *, std::optional<QString>, bool, bool, std::optional<bool>> rows[] = {
        {"sub-account", u"true"_s, false, true, true},
        {"sub-account of a partner", u"true"_s, true, true, true},
        {"partner", u"false"_s, true, true, std::nullopt},
        {"owner", u"false"_s, false, false, false},
        {"no file", std::nullopt, false, false, false},
        {"line feed", u"true\n"_s, false, false, false},
    };
    for (const auto &[name, type, partner, upgradeHidden, isSubAccount] : rows) {
        SCOPED_TRACE(name);
        MenuState menu;
        EXPECT_EQ(MenuRules::setAccountItems(menu, type, partner), isSubAccount);
        EXPECT_EQ(menu[MenuItem::Upgrade].hidden, upgradeHidden);
        EXPECT_EQ(menu[MenuItem::UpgradeSeparator].hidden, upgradeHidden);
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
    in.dedup = u"on"_s;
    in.remote = {.hasUser = true, .mobileOnly = true, .word = u"0"_s};
    in.runningJob = RunningJob::Backup;
    const MenuState signIn = MenuRules::atSignIn(in).items;
    EXPECT_EQ(signIn[MenuItem::RemoteManagement].title, u"Disable Web Access"_s);
    EXPECT_EQ(signIn[MenuItem::RemoteManagement].hidden, true);
    EXPECT_EQ(signIn[MenuItem::Protection].hidden, true);
    EXPECT_EQ(signIn[MenuItem::Protection].present, std::nullopt);
    EXPECT_EQ(signIn[MenuItem::StopJob].enabled, std::nullopt);
    EXPECT_EQ(signIn[MenuItem::Scheduler].enabled, true);

    const MenuState opening = MenuRules::atOpening(in).items;
    EXPECT_EQ(opening[MenuItem::RemoteManagement].title, u"Enable Web Access"_s);
    EXPECT_EQ(opening[MenuItem::RemoteManagement].hidden, false);
    EXPECT_EQ(opening[MenuItem::Protection].present, false);
    EXPECT_EQ(opening[MenuItem::StopJob].enabled, true);
}

TEST_F(MenuRulesTest, ProtectionIsTickedByItsWordAlone)
{
    const std::pair<std::optional<QString>, bool> rows[] = {
        {u"1"_s, true}, {u"0"_s, false}, {u"true"_s, false}, {std::nullopt, false}};
    for (const auto &[word, ticked] : rows) {
        SCOPED_TRACE(word.value_or(u"none"_s).toStdString());
        MenuInputs in;
        in.dedup = u"on"_s; // made anew: the tick comes with it
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
        {"empty first line", u"\nmore"_s, std::nullopt},
        {"up to date", u"All files are up to date"_s, std::nullopt},
        {"paused", u"Paused\nmore"_s, std::nullopt},
        {"first line", u"Uploading a.txt\n3 left"_s, u"Uploading a.txt"_s},
        {"35 characters", exactly35, exactly35},
        {"36 characters", exactly35 + u'b', exactly35 + u"..."_s},
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

// The menu: what is offered when, and how its items look and act.

#include "Source/Controller/MenuRules.h"
#include "Source/Controller/StatusMenu.h"
#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/TemporaryHome.h"

#include <QTest>

#include <algorithm>
#include <functional>
#include <random>
#include <set>

using namespace Qt::StringLiterals;
using namespace MenuRules;

namespace
{
/// The menu as it is seen, an item a line: "(off)" is greyed out, "[x] " and "[ ] " stand before what can be
/// ticked, what a submenu holds is indented.
QString seen(const QMenu &menu, const QString &indent = {})
{
    QString lines;
    for (const QAction *action : menu.actions()) {
        if (!action->isVisible())
            continue;
        QString text = action->isSeparator() ? u"---"_s : action->text();
        if (action->isCheckable())
            text.prepend(action->isChecked() ? u"[x] "_s : u"[ ] "_s);
        if (!action->isSeparator() && !action->isEnabled())
            text += u" (off)"_s;
        lines += indent + text + u'\n';
        if (action->menu() && action->isEnabled())
            lines += seen(*action->menu(), indent + u"    "_s);
    }
    return lines;
}

class MenuTest : public testing::Test
{
protected:
    MenuTest() { m_menu.apply(titles(u"Corvane"_s, std::nullopt)); }

    static void start(StatusMenu &menu, const MenuInputs &in)
    {
        menu.apply(titles(in.appFullName, in.switchText));
        menu.apply(atStart(in).items);
    }
    static QString opened(StatusMenu &menu, const MenuInputs &in)
    {
        menu.apply(needsUpdate(in.appFullName, in.switchText));
        menu.apply(atOpening(in).items);
        return seen(menu.menu());
    }

    const TemporaryHome m_home;
    std::vector<MenuAction> m_clicks;
    StatusMenu m_menu{[this](MenuAction action) { m_clicks.push_back(action); }};
};

MenuInputs signedIn()
{
    return {.appFullName = u"Corvane"_s,
            .recordPresent = true,
            .dedup = u"on"_s,
            .accountType = u"false"_s,
            .remote = {.hasUser = true, .word = u"1"_s},
            .switchText = u"1"_s,
            .backupLine = u"No jobs today"_s};
}

void signOut(MenuInputs &in)
{
    in = {.appFullName = u"Corvane"_s, .backupLine = u"Corvane"_s};
}

std::function<void(MenuInputs &)> runJob(RunningJob job, bool isPaused = false)
{
    return [=](MenuInputs &in) {
        in.runningJob = job;
        in.runningJobPaused = isPaused;
        in.operationRuns = in.scheduleBackupRunning = true;
        in.backupLine = u"Job runs"_s;
    };
}

std::function<void(MenuInputs &)> useEngine(const QString &protectionWord, bool followsPolling = true)
{
    return [=](MenuInputs &in) {
        in.engineUser = true;
        in.protectionWord = protectionWord;
        in.followsPolling = followsPolling;
    };
}

const QString idle = uR"(Status
Show progress (off)
No jobs today (off)
---
Scheduler
    Manage all scheduled jobs
    ---
    Pause the scheduled job (off)
    Stop the scheduled job (off)
    ---
    Disable all scheduled jobs
View logs
Disable Web Access
---
Start application
Access Corvane web
Upgrade storage
---
Settings
Proxy settings
---
Check for latest version
Send error report
Online help
---
Quit application monitor
)"_s;

/// Empty where each separator that is seen parts two items that are seen; else what is wrong.
std::string separatorFault(const QMenu &menu)
{
    bool lastWasSeparator = true;
    for (const QAction *action : menu.actions()) {
        if (!action->isVisible())
            continue;
        if (action->isSeparator() && lastWasSeparator)
            return "a separator is first or doubled";
        lastWasSeparator = action->isSeparator();
    }
    return lastWasSeparator && !menu.isEmpty() ? "a separator is last" : std::string();
}
} // namespace

TEST_F(MenuTest, IsSeenAsItsStateAsks)
{
    using Changes = std::vector<std::pair<QString, QString>>; // of the idle menu
    const QString web = u"Disable Web Access"_s, protection = u"Continuous Data Protection\n"_s;
    const std::pair<QString, QString> show(u"Show progress (off)\nNo jobs today (off)"_s,
                                           u"Show progress\nJob runs"_s),
        stop(u"Stop the scheduled job (off)"_s, u"Stop the scheduled job"_s),
        noSwitch(u"Disable all scheduled jobs"_s, u"Disable all scheduled jobs (off)"_s),
        pause(u"Pause the scheduled job (off)"_s, u"Pause the scheduled job"_s),
        resume(pause.first, u"Resume the scheduled job"_s), offline(web, web + u" (off)"_s),
        noWeb(web + u"\n---"_s, u"---"_s), webAlone(web, u"---\n"_s + web),
        noAccess(web, u"Enable Web Access"_s), noUpgrade(u"Upgrade storage\n---\n"_s, {}),
        jobs(idle.section(u'\n', 5, 10) + u'\n', {});
    const Row<std::function<void(MenuInputs &)>, Changes> rows[] = {
        {"signed in", [](MenuInputs &) {}, {}},
        {"signed out",
         signOut,
         {{u"No jobs today (off)\n"_s, {}}, {u"Scheduler"_s, u"Scheduler (off)"_s}, jobs, offline}},
        {"record that names nobody", [](MenuInputs &in) { in.remote = {}; }, {offline}},
        {"thin client", [](MenuInputs &in) { in.thinClient = true; }, {noWeb}},
        {"thin client with the engine", [](MenuInputs &in) { in.thinClient = in.engineUser = true; }, {noWeb}},
        {"backup running", runJob(RunningJob::Backup), {show, stop, noSwitch, pause}},
        {"paused backup", runJob(RunningJob::Backup, true), {show, stop, noSwitch, resume}},
        {"restore running", runJob(RunningJob::Other), {show, stop, noSwitch}},
        {"jobs disabled",
         [](MenuInputs &in) { in.switchText = u"0"_s; },
         {{u"Manage all scheduled jobs"_s, u"Manage all scheduled jobs (off)"_s},
          {u"Disable all scheduled"_s, u"Enable all scheduled"_s}}},
        {"engine user", useEngine(u"1"_s), {{web + u'\n', u"---\n"_s + web + u"\n[x] "_s + protection}}},
        {"engine user with a channel of its own, and a word that is none",
         useEngine(u"true"_s, false),
         {{web + u'\n', u"---\n[ ] "_s + protection}}},
        {"web access switched off", [](MenuInputs &in) { in.remote.word = u"0"_s; }, {noAccess}},
        {"a plan without it", [](MenuInputs &in) { in.remote.mobileOnly = true; }, {noAccess}},
        {"sub-account", [](MenuInputs &in) { in.accountType = u"true"_s; }, {noUpgrade}},
        {"partner", [](MenuInputs &in) { in.partnerPlan = true; }, {noUpgrade}},
        {"a type that is none", [](MenuInputs &in) { in.accountType = u"true\n"_s; }, {}},
        {"account without deduplication", [](MenuInputs &in) { in.dedup = u"off"_s; }, {webAlone}},
        {"Cloud Drive",
         [](MenuInputs &in) {
             in.cloudDrive = {.enabled = true, .paused = true, .statusLine = u"Uploading\nof 3"_s};
         },
         {{u"Start app"_s, u"Cloud Drive\n    Uploading (off)\n    ---\n    My Cloud Drive folder\n"
                           u"    Resume\n---\nStart app"_s}}},
    };
    forEachRow(rows, [](const auto &row) {
        MenuInputs in = signedIn();
        row.given(in);
        QString wanted = idle;
        for (const auto &[from, to] : row.expected) {
            ASSERT_EQ(wanted.count(from), 1) << from.toStdString();
            wanted.replace(from, to);
        }
        StatusMenu menu([](MenuAction) {});
        start(menu, in);
        EXPECT_FALSE(menu.isEnabled(MenuItem::ShowProgress)) << "a start offers none, whatever runs";
        EXPECT_EQ(opened(menu, in), wanted);
        EXPECT_EQ(menu.action(MenuItem::PauseJob)->toolTip(),
                  in.runningJobPaused ? u"Scheduled backup is paused."_s : u"Corvane"_s);
    });
}

TEST_F(MenuTest, FollowsTheFilesFromOneOpeningToTheNext)
{
    MenuInputs in = signedIn();
    start(m_menu, in);
    EXPECT_EQ(opened(m_menu, in), idle);

    MenuInputs busy = in;
    runJob(RunningJob::Backup)(busy);
    busy.engineUser = busy.cloudDrive.enabled = true;
    busy.accountType = u"true"_s;
    const QString whileBusy = opened(m_menu, busy);
    EXPECT_TRUE(whileBusy.startsWith(u"Status\nShow progress\nJob runs\n"_s));
    EXPECT_TRUE(whileBusy.contains(u"[ ] Continuous Data Protection\n---\nCloud Drive\n"_s));
    EXPECT_FALSE(whileBusy.contains(u"Upgrade"_s));

    signOut(in);
    EXPECT_TRUE(opened(m_menu, in).contains(u"Scheduler (off)\n"_s));

    // What a visit of an engine account uncovers stays: nothing but a start hides its separator again.
    EXPECT_EQ(opened(m_menu, signedIn()), QString(idle).replace(u"View logs\n"_s, u"View logs\n---\n"_s));
}

TEST_F(MenuTest, TheSwitchIsFoundByAZeroAnywhereAtAStartAndByTheWholeTextAtAnOpening)
{
    const struct {
        const char *name;
        std::optional<QString> text;
        bool offAtStart;
        std::optional<bool> offAtOpening; ///< none: nothing is touched
    } rows[] = {
        {"disabled", u"0"_s, true, true},        {"line feed", u"0\n"_s, true, false},
        {"inside", u"10"_s, true, false},        {"enabled", u"1"_s, false, false},
        {"job paused", u"2"_s, false, false},    {"empty", QString(), false, false},
        {"unreadable", std::nullopt, false, {}},
    };
    const auto expectOff = [](const MenuState &menu, bool isOff) {
        EXPECT_EQ(menu[MenuItem::SwitchJobs].title,
                  isOff ? u"Enable all scheduled jobs"_s : u"Disable all scheduled jobs"_s);
        EXPECT_EQ(menu[MenuItem::ManageJobs].enabled, !isOff);
        EXPECT_EQ(menu[MenuItem::WebAccess].toolTip, u"Access, Restore, Share files / folders, etc via Web"_s);
    };
    forEachRow(rows, [&](const auto &row) {
        expectOff(titles(u"Corvane"_s, row.text), row.offAtStart);
        const MenuState opening = needsUpdate(u"Corvane"_s, row.text);
        if (row.offAtOpening)
            expectOff(opening, *row.offAtOpening);
        else
            EXPECT_EQ(opening, MenuState());
    });
}

TEST_F(MenuTest, ProgressIsOfferedUnlessTheMainApplicationShowsIt)
{
    const struct {
        const char *name;
        bool runs, mainApplication, scheduled, window, progress, companion, isSignedIn = true;
    } rows[] = {
        {"flag without an operation", false, false, true, false, false, false},
        {"scheduled", true, false, true, false, true, true},
        {"scheduled, window seen", true, false, true, true, true, false},
        {"interactive, window seen", true, false, false, true, true, true},
        {"main application runs", true, true, true, false, false, false},
        {"but shows nothing to nobody", true, true, true, false, true, true, false},
    };
    forEachRow(rows, [](const auto &row) {
        MenuInputs in;
        in.recordPresent = row.isSignedIn;
        in.operationRuns = row.runs;
        in.mainApplicationRuns = row.mainApplication;
        in.scheduleBackupRunning = row.scheduled;
        in.progressWindowVisible = row.window;
        const MenuState opening = atOpening(in).items;
        EXPECT_EQ(opening[MenuItem::ShowProgress].enabled, row.progress);
        EXPECT_EQ(opening[MenuItem::ProgressCompanion].enabled, row.companion);
        const MenuRefresh signIn = atSignIn(in); // doesn't ask for the window
        EXPECT_EQ(signIn.items[MenuItem::ProgressCompanion].enabled, row.progress);
        EXPECT_EQ(signIn.closesProgressWindow, !row.progress);
    });
}

TEST_F(MenuTest, ChangedSettingsTickProtectionByTheirWordWhereTheyHaveOne)
{
    for (const auto &[word, isTicked] : {std::pair(u"1"_s, true), std::pair(u"0"_s, false)}) {
        EXPECT_EQ(protectionAfterSettings(true, word)[MenuItem::Protection].ticked, isTicked);
        EXPECT_EQ(protectionAfterSettings(false, word), MenuState());
    }
}

TEST_F(MenuTest, TheSyncStatusLineIsShortAndSilentAtRest)
{
    const QString exactly35(35, u'a');
    const Row<std::optional<QString>, std::optional<QString>> rows[] = {
        {"none", {}, {}},
        {"empty first line", u"\nmore"_s, {}},
        {"up to date", u"All files are up to date"_s, {}},
        {"paused", u"Paused\nmore"_s, {}},
        {"first line", u"Uploading a.txt\n3 left"_s, u"Uploading a.txt"_s},
        {"35 characters", exactly35, exactly35},
        {"36 characters", exactly35 + u'b', exactly35 + u"..."_s},
    };
    forEachRow(rows, [](const auto &row) {
        MenuState menu;
        setCloudDriveItems(menu, {.enabled = true, .paused = {}, .statusLine = row.given}, false);
        EXPECT_EQ(menu[MenuItem::SyncStatus].hidden, !row.expected);
        EXPECT_EQ(menu[MenuItem::SyncStatus].title, row.expected);
        EXPECT_EQ(menu[MenuItem::PauseSync], MenuItemChange());
    });
}

// ---- The items themselves -----------------------------------------------------------------------------------

TEST_F(MenuTest, ItemsAreFoundByTheirNumbersAndTitles)
{
    using I = MenuItem;
    for (const auto &[tag, menuItem] :
         {std::pair{310, I::RemoteManagement}, {2013, I::Scheduler}, {91653, I::PauseSync}})
        EXPECT_EQ(m_menu.itemWithTag(tag), m_menu.action(menuItem)) << tag;
    for (const int tag : {0, 7})
        EXPECT_EQ(m_menu.itemWithTag(tag), nullptr);
    EXPECT_EQ(m_menu.itemWithTitle(u"Cloud Drive"_s), m_menu.action(I::CloudDrive));
    EXPECT_EQ(m_menu.itemWithTitle(u"Pause"_s), nullptr) << "in a submenu";
    EXPECT_EQ(m_menu.itemWithTitle(QString()), nullptr);
}

TEST_F(MenuTest, AnItemThatIsTakenOutComesBackOnlyWhenItIsPutBack)
{
    m_menu.apply(MenuItem::Protection, {.present = false});
    EXPECT_EQ(m_menu.itemWithTag(320), nullptr);
    m_menu.apply(MenuItem::Protection, {.hidden = false, .ticked = true});
    EXPECT_TRUE(m_menu.isHidden(MenuItem::Protection));
    EXPECT_FALSE(m_menu.action(MenuItem::Protection)->isVisible());
    EXPECT_FALSE(m_menu.isTicked(MenuItem::Protection));
    m_menu.apply(MenuItem::Protection, {.present = true, .hidden = false, .ticked = true});
    EXPECT_TRUE(m_menu.action(MenuItem::Protection)->isVisible());
    EXPECT_TRUE(m_menu.action(MenuItem::Protection)->isChecked());
}

TEST_F(MenuTest, EachCommandAsksForAnActionOfItsOwn)
{
    for (std::size_t item = 0; item < MenuItemCount; ++item)
        m_menu.action(static_cast<MenuItem>(item))->trigger();
    EXPECT_EQ(m_clicks.size(), 21U);
    EXPECT_EQ(std::set(m_clicks.begin(), m_clicks.end()).size(), 20U) << "two show the progress";
}

TEST_F(MenuTest, AClickLeavesTheTickToTheFiles)
{
    for (const bool isTicked : {false, true}) {
        m_menu.apply(MenuItem::Protection, {.ticked = isTicked});
        m_menu.action(MenuItem::Protection)->trigger();
        EXPECT_EQ(m_menu.action(MenuItem::Protection)->isChecked(), isTicked);
    }
}

TEST_F(MenuTest, ARefreshRunsBeforeTheMenuIsSeen)
{
    bool wasVisible = true;
    m_menu.setWillOpen([&] {
        wasVisible = m_menu.menu().isVisible();
        m_menu.apply(MenuItem::Status, {.title = u"Fresh"_s});
    });
    m_menu.menu().popup(QPoint(10, 10));
    EXPECT_FALSE(wasVisible);
    EXPECT_EQ(m_menu.action(MenuItem::Status)->text(), u"Fresh"_s);
    QTest::mouseClick(&m_menu.menu(), Qt::LeftButton, {},
                      m_menu.menu().actionGeometry(m_menu.action(MenuItem::Status)).center());
    EXPECT_EQ(m_clicks, std::vector{MenuAction::ShowStatus});
}

TEST_F(MenuTest, ASecondRefreshOfTheSameStateTouchesNoItem)
{
    MenuInputs in = signedIn();
    in.engineUser = true;
    std::ignore = opened(m_menu, in);
    int changes = 0;
    for (const QAction *action : m_menu.menu().findChildren<QAction *>())
        QObject::connect(action, &QAction::changed, &m_menu.menu(), [&changes] { ++changes; });
    std::ignore = opened(m_menu, in);
    EXPECT_EQ(changes, 0);
    in.partnerPlan = true; // takes out the upgrade and its separator
    std::ignore = opened(m_menu, in);
    EXPECT_EQ(changes, 2);
}

TEST_F(MenuTest, SeparatorsStandBetweenItemsWhateverIsHidden)
{
    std::mt19937 random(20261122);
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE(round);
        const unsigned hiddenOfTen = random() % 11;
        MenuState state;
        for (std::size_t item = 0; item < MenuItemCount; ++item)
            state[static_cast<MenuItem>(item)].hidden = random() % 10 < hiddenOfTen;
        m_menu.apply(state);
        for (const QMenu *menu : {static_cast<const QMenu *>(&m_menu.menu()),
                                  static_cast<const QMenu *>(m_menu.submenu(MenuItem::Scheduler)),
                                  static_cast<const QMenu *>(m_menu.submenu(MenuItem::CloudDrive))})
            EXPECT_EQ(separatorFault(*menu), std::string());
    }
}

TEST_F(MenuTest, ATitleIsShownToTheLetter)
{
    const struct {
        const char *name;
        QString title, inWindow, onBus;
    } rows[] = {
        {"plain", u"Status"_s, u"Status"_s, u"Status"_s},
        {"underscores", u"a_b__c"_s, u"a_b__c"_s, u"a__b____c"_s},
        {"ampersands", u"R & D & co"_s, u"R && D && co"_s, u"R && D & co"_s},
        {"ampersand last", u"R&"_s, u"R&&"_s, u"R&&"_s},
        {"both", u"a & b_c"_s, u"a && b_c"_s, u"a \uff06 b__c"_s},
    };
    forEachRow(rows, [this](const auto &row) {
        m_menu.apply(MenuItem::SyncStatus, {.title = row.title});
        EXPECT_EQ(m_menu.title(MenuItem::SyncStatus), row.title);
        EXPECT_EQ(m_menu.action(MenuItem::SyncStatus)->text(), row.inWindow);
        EXPECT_EQ(StatusMenu::textOnBus(row.title), row.onBus);
    });
}

TEST_F(MenuTest, TitlesAndTipsFromOutsideAreFitToBeShown)
{
    const auto shown = [this](const QString &text) {
        m_menu.apply(MenuItem::UserLine, {.title = text, .toolTip = text});
        return std::pair(m_menu.title(MenuItem::UserLine), m_menu.action(MenuItem::UserLine)->toolTip());
    };
    const auto [title, tip] = shown(u"<b>a</b>\n\u202Eb\u0007"_s);
    EXPECT_EQ(title, u"<b>a</b> b\uFFFD"_s);
    EXPECT_EQ(tip, u"<\u200Bb>a<\u200B/b>\nb\uFFFD"_s) << "no markup, its lines kept";
    EXPECT_EQ(shown(QString(16'000'000, u'x')).first.size(), 4096);
}

// The window of the activity logs over real day files, driven by keys, clicks and the accessibility bus's
// calls.

#include "Classes/ACTIVITY_LOGS/LogTableDelegate.h"
#include "Classes/ACTIVITY_LOGS/LogTextView.h"
#include "Tests/ActivityLogs/ActivityLogsFixture.h"
#include "Tests/Support/ForEachRow.h"
#include "Utility/Language/ActivityLogsVC.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QMenu>
#include <QScrollBar>
#include <QTabWidget>

using namespace Qt::StringLiterals;

namespace
{
using ActivityLogsWindow = ActivityLogsFixture;

QAccessibleTableInterface *tableOf(LogTableView &view)
{
    return QAccessible::queryAccessibleInterface(&view)->tableInterface();
}
} // namespace

TEST(LogStatusLookTest, AWordThatNobodyKnowsIsNeutral)
{
    const Row<const char16_t *, LogState> rows[] = {
        {"success", u"Success", LogState::Success},    {"other case", u" failure ", LogState::Failure},
        {"runs", u"In Progress", LogState::Progress},  {"cancelled", u"Cancelled", LogState::Warning},
        {"unknown", u"Successful", LogState::Neutral}, {"none", u"", LogState::Neutral},
    };
    forEachRow(rows, [](const auto &row) { EXPECT_EQ(logStatusLook(row.given).state, row.expected); });
    EXPECT_EQ(logOperationImage(24), u"log_network_backup"_s);
    EXPECT_EQ(logOperationImage(17), u"log_other"_s);
}

TEST(LogPeriodsTest, APeriodBeginsOnADayOfTheCalendar)
{
    const Row<int, QDate> rows[] = {
        {"week", LogPeriods::Week, QDate(2026, 3, 24)},
        {"two weeks", LogPeriods::TwoWeeks, QDate(2026, 3, 17)},
        {"month before its 31st", LogPeriods::Month, QDate(2026, 2, 28)},
    };
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(LogPeriods::firstDay(row.given, QDate(2026, 3, 31)), row.expected);
    });
    EXPECT_FALSE(LogPeriods::firstDay(LogPeriods::Beginning, QDate(2026, 3, 31)));
}

TEST_F(ActivityLogsWindow, ListsTheUsersOwnRecordsAndNobodysWithTheRunningOneOnTop)
{
    day(today(), record("03-31-2026 09:00:00") + record("03-31-2026 08:00:00", "In Progress", "3") +
                     record("03-31-2026 10:00:00", "", "17", "") +
                     record("03-31-2026 11:00:00", "Success", "1", "bob"));
    day(today().addDays(-8), record("03-23-2026 10:00:00"));
    open();
    EXPECT_EQ(column(LogColumn::DateTime),
              QStringList({u"03-31-2026 08:00:00"_s, u"03-31-2026 10:00:00"_s, u"03-31-2026 09:00:00"_s}));
    EXPECT_EQ(column(LogColumn::Files), QStringList({u"12"_s, QString(), u"12"_s})) << "no status, no count";
    EXPECT_FALSE(outlet<QLabel>("noItemsLabel").isVisible());
    choose(LogPeriods::TwoWeeks);
    EXPECT_EQ(view().model().rowCount(), 4);
    EXPECT_EQ(controller().logsFrom(), LogPeriods::TwoWeeks);

    role.user = u"eve"_s;
    controller().userDidChange();
    ASSERT_TRUE(settle());
    EXPECT_EQ(view().model().rowCount(), 1);
    role.user = u"bob"_s;
    QDir(pathValue("LogsDumpPath"_L1, {})).removeRecursively();
    controller().displayLogs(LogPeriods::Beginning);
    ASSERT_TRUE(settle());
    EXPECT_EQ(view().model().rowCount(), 0) << "a folder that can't be listed leaves no rows from before";
    EXPECT_EQ(outlet<QLabel>("noItemsLabel").text(), u"No items found"_s);
    EXPECT_TRUE(outlet<QLabel>("noItemsLabel").isVisible());
}

TEST_F(ActivityLogsWindow, AFurtherPageComesAtTheEndAndLeavesSelectionOrderAndPlace)
{
    days(45, 1);
    open();
    choose(LogPeriods::Beginning);
    EXPECT_EQ(view().model().rowCount(), 20);
    table().sortBy(LogColumn::DateTime); // the oldest first
    select({3, 5});
    const LogNodes selected = table().selectedRecords();
    QScrollBar &bar = *table().verticalScrollBar();
    bar.setValue(bar.maximum());
    const QString shown = view().model().text(table().rowAt(0), LogColumn::DateTime);
    ASSERT_TRUE(waitUntil([&] { return view().model().rowCount() == 40; }));
    EXPECT_EQ(table().selectedRecords(), selected);
    EXPECT_EQ(view().model().text(23, LogColumn::DateTime), selected[0]->datetime) << "older ones stand above";
    EXPECT_EQ(view().model().text(table().rowAt(0), LogColumn::DateTime), shown);
    ASSERT_TRUE(settle());
    QTest::keyClick(&table(), Qt::Key_End);
    ASSERT_TRUE(waitUntil([&] { return view().model().rowCount() == 45; }));
}

TEST_F(ActivityLogsWindow, PagesFollowUntilTheWindowIsFull)
{
    for (int back = 0; back < 50; ++back)
        day(today().addDays(-back), record("03-31-2026 09:00:00", "Success", "1", back < 45 ? "bob" : "ana"));
    open();
    choose(LogPeriods::Beginning);
    EXPECT_TRUE(waitUntil([&] { return view().model().rowCount() == 5; }));
}

TEST_F(ActivityLogsWindow, ARefreshKeepsWhatIsSelectedElseTakesTheFirstRow)
{
    days(7, 10);
    open();
    QTest::keyClick(&view(), Qt::Key_F5);
    ASSERT_TRUE(settle());
    EXPECT_EQ(table().currentIndex().row(), 0);
    select({30, 40});
    table().verticalScrollBar()->setValue(500);
    const QString shown = view().model().text(table().rowAt(0), LogColumn::DateTime);
    day(today(), record("03-31-2026 12:00:00") + record("03-31-2026 10:00:00"));
    QTest::keyClick(&view(), Qt::Key_F5);
    ASSERT_TRUE(settle());
    EXPECT_EQ(view().model().rowCount(), 62);
    LogNodes selected = table().selectedRecords();
    ASSERT_EQ(selected.size(), 2u);
    EXPECT_EQ(view().model().text(22, LogColumn::DateTime), selected[0]->datetime)
        << "the same record, eight rows up";
    EXPECT_EQ(view().model().text(table().rowAt(0), LogColumn::DateTime), shown);
}

TEST_F(ActivityLogsWindow, EachDeletionAsksAndTakesJustWhatItNames)
{
    const struct {
        const char *name;
        bool answer;
        std::function<void()> press;
        QString question;
        int left;
    } rows[] = {
        {"Delete, refused", false, [this] { QTest::keyClick(&table(), Qt::Key_Delete); },
         u"Would you like to delete selected item(s)?"_s, 6},
        {"Delete, two rows", true, [this] { QTest::keyClick(&table(), Qt::Key_Delete); },
         u"Would you like to delete selected item(s)?"_s, 4},
        {"button of a row", true,
         [this] {
             const QRect cell = table().visualRect(view().model().index(3, int(LogColumn::Delete)));
             QTest::mouseClick(table().viewport(), Qt::LeftButton, {},
                               LogTableDelegate::buttonRect(cell).center());
         },
         u"Would you like to delete selected item?"_s, 5},
        {"button, by a screen reader", true,
         [this] {
             QAccessibleInterface *button = tableOf(table())->cellAt(5, int(LogColumn::Delete));
             EXPECT_EQ(button->role(), QAccessible::PushButton);
             EXPECT_EQ(button->text(QAccessible::Name), u"Delete Log"_s);
             button->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
         },
         u"Would you like to delete selected item?"_s, 5},
        {"while the list is read anew", true,
         [this] {
             role.whileAsking = [this] { controller().refreshAction(); };
             QTest::keyClick(&table(), Qt::Key_Delete);
         },
         u"Would you like to delete selected item(s)?"_s, 4},
        {"all, and another period is chosen before the answer", true,
         [this] {
             role.whileAsking = [this] { controller().displayLogs(LogPeriods::TwoWeeks); };
             view().findChild<QAction *>(u"deleteAllItemsRef"_s)->trigger();
         },
         u"Would you like to delete all item(s)?"_s, 6},
        {"all of the period", true, [this] { view().findChild<QAction *>(u"deleteAllItemsRef"_s)->trigger(); },
         u"Would you like to delete all item(s)?"_s, 0},
    };
    day(today().addDays(-30), record("03-01-2026 10:00:00"));
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        days(2, 3);
        open();
        role.answer = row.answer;
        role.questions.clear();
        select({1, 2});
        row.press();
        EXPECT_TRUE(waitUntil([&] { return role.questions == QStringList(row.question); }));
        role.whileAsking = {};
        ASSERT_TRUE(settle());
        EXPECT_EQ(view().model().rowCount(), row.left);
        const auto inFiles = [this] { return (file(today()) + file(today().addDays(-1))).count("<record>"); };
        EXPECT_TRUE(waitUntil([&] { return inFiles() == row.left; })) << inFiles();
        EXPECT_TRUE(file(today().addDays(-30)).contains("<record>")) << "it is not listed";
    }
}

TEST_F(ActivityLogsWindow, AllOfAllTimeGoesOnceEveryDayWasRead)
{
    days(30, 2);
    day(today().addDays(-1),
        record("03-30-2026 10:00:00") + record("03-30-2026 11:00:00", "Success", "1", "bob"));
    open();
    choose(LogPeriods::Beginning);
    view().findChild<QAction *>(u"deleteAllItemsRef"_s)->trigger();
    ASSERT_TRUE(waitUntil([&] { return !role.questions.isEmpty(); }));
    EXPECT_EQ(view().model().rowCount(), 0);
    controller().displayLogs(LogPeriods::Week); // waits for the deletion, and does not stop it
    ASSERT_TRUE(waitUntil([&] { return file(today().addDays(-29)).isEmpty() && file(today()).isEmpty(); }));
    ASSERT_TRUE(waitUntil([&] { return file(today().addDays(-1)).count("<record>") == 1; })) << "bob's";
    ASSERT_TRUE(settle());
    days(30, 1);
    choose(LogPeriods::Beginning);
    choose(LogPeriods::Week);
    EXPECT_EQ(view().model().rowCount(), 8) << "no later read deletes";
}

TEST_F(ActivityLogsWindow, AnOrderFromTheWebTakesOneRecordOfThisUserHoweverOld)
{
    const QByteArray log = "/nowhere/03-01-2026-10-00-00";
    const QDate old = today().addDays(-40);
    days(30, 1);
    day(old, record("02-19-2026 10:00:00", "Success", "1", "bob", log) +
                 record("02-19-2026 11:00:00", "Success", "3", "ana", log) +
                 record("02-19-2026 12:00:00", "Success", "1", "ana", log));
    controller().viewDidLoad();
    controller().deleteLog(u"03-01-2026-10-00-00"_s, u"Online Backup"_s);
    controller().deleteLog(u"unknown"_s, u"Online Backup"_s);
    ASSERT_TRUE(waitUntil([&] { return file(old).count("<record>") == 2; })) << "no window is needed";
    EXPECT_FALSE(file(old).contains("12:00:00"));
    ASSERT_TRUE(settle());
    EXPECT_EQ(controller().logsFrom(), LogPeriods::Beginning);
}

TEST_F(ActivityLogsWindow, KeysDoWhatTheMouseDoes)
{
    const QByteArray log = home.path(u"a b"_s).toUtf8();
    day(today(), record("03-31-2026 09:00:00", "Success", "3", "ana", log) + record("03-31-2026 08:00:00") +
                     record("03-31-2026 07:00:00", "Success", "12"));
    open();
    table().setFocus();
    QTest::keyClick(&table(), Qt::Key_End);
    EXPECT_EQ(table().currentIndex().row(), 2);
    QTest::keyClick(&table(), Qt::Key_Home);
    EXPECT_EQ(table().currentIndex().row(), 0);
    QTest::keyClick(&table(), Qt::Key_Return);
    EXPECT_EQ(role.done, QStringList(QString::fromUtf8(log)));
    QTest::keyClicks(&table(), u"sy"_s);
    EXPECT_EQ(table().selectedRecords().front()->optype, u"12"_s);
    QTest::keyClick(&table(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(table().selectedRecords().size(), 3u);
    QTest::keyClick(&view(), Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(column(LogColumn::Operation), QStringList({u"Online backup"_s, u"Online restore"_s, u"Sync"_s}));
    EXPECT_EQ(table().selectedRecords().size(), 3u);
    auto *menu = view().findChild<QMenu *>();
    QTest::keyClick(&table(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(menu->actions().size(), 3);
    menu->hide();
    QTest::keyClick(&view(), Qt::Key_Escape);
    EXPECT_FALSE(window.isWindowVisible());
}

TEST_F(ActivityLogsWindow, AScreenReaderFindsARowForEachRecord)
{
    days(1, 3);
    open();
    QAccessibleTableInterface *list = tableOf(table());
    ASSERT_EQ(list->rowCount(), 3);
    EXPECT_EQ(list->cellAt(0, 1)->text(QAccessible::Name), u"03-31-2026 10:02:00"_s);
    EXPECT_EQ(list->cellAt(2, 4)->text(QAccessible::Name), u"12"_s);
    EXPECT_EQ(list->cellAt(3, 0), nullptr);
    EXPECT_TRUE(list->selectRow(2));
    EXPECT_EQ(table().selectedRecords(), LogNodes{view().model().record(2)});
    EXPECT_TRUE(list->cellAt(2, 0)->state().selected);
    QAccessibleInterface *whole = QAccessible::queryAccessibleInterface(&table());
    EXPECT_EQ(whole->text(QAccessible::Name), u"Activity logs"_s);
    EXPECT_EQ(whole->childCount(), 4 * LogColumns);
    EXPECT_EQ(whole->indexOfChild(list->cellAt(1, 5)), 2 * LogColumns + 5);
}

TEST_F(ActivityLogsWindow, TheSelectedRecordsTextsStandInItsTabs)
{
    const QString log = home.path(u"logs/one"_s);
    home.write(log, "details");
    home.write(log + u".summary"_s, "summary");
    home.write(log + u"_sync.rename"_s, "renamed");
    day(today(), record("03-31-2026 09:00:00", "Success", "1", "ana", log.toUtf8()) +
                     record("03-31-2026 08:00:00", "Success", "12", "ana", log.toUtf8() + "_sync"));
    open();
    auto &details = outlet<QTabWidget>("mDetailTabView");
    auto &sync = outlet<QTabWidget>("mSyncTabView");
    select({0});
    ASSERT_TRUE(waitUntil([&] { return view().textView(LogTab::Summary).toPlainText() == u"summary"_s; }));
    EXPECT_EQ(view().textView(LogTab::Details).toPlainText(), u"details"_s);
    EXPECT_EQ(details.tabText(0), u"Summary"_s);
    select({1});
    ASSERT_TRUE(waitUntil([&] { return view().textView(LogTab::Rename).toPlainText() == u"renamed"_s; }));
    EXPECT_TRUE(sync.isVisible() && !details.isVisible());
    EXPECT_EQ(sync.count(), 1);
    select({});
    EXPECT_TRUE(waitUntil([&] { return view().textView(LogTab::Rename).toPlainText().isEmpty(); }));
}

TEST_F(ActivityLogsWindow, StandsAsItStood)
{
    open();
    view().resize(900, 700);
    table().horizontalHeader()->moveSection(3, 0);
    table().horizontalHeader()->resizeSection(int(LogColumn::Duration), 173);
    const LogWindowSettings stood = view().settings();
    window.close();
    EXPECT_EQ(LogWindowSettings::load(UserDefaults(defaults.path())), stood) << "also for the next start";
    ActivityLogsView next;
    next.restore(stood);
    EXPECT_EQ(next.table().columns()[0].column, LogColumn::Status);
    EXPECT_EQ(next.settings().columns[3].width, 173);
    EXPECT_TRUE(LogWindowSettings::columnsOf(QVariantList{7, QVariantMap{{u"column"_s, u"Other"_s}}}).empty());
}

TEST_F(ActivityLogsWindow, SavingTellsOnceThatAFolderCannotBeWritten)
{
    days(1, 2);
    open();
    select({0, 1});
    chosenFolder = home.path(u"nowhere"_s);
    role.answer = false;
    controller().archiveSelectedLog();
    EXPECT_EQ(role.questions, QStringList(u"Unable to write the file(s)"_s));
}

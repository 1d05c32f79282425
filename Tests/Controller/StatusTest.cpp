// Icon and tool tip through the whole controller: what sync and a job do to each other's.

#include "Tests/Controller/MonitorFixture.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/QNUtility.h"

using namespace Qt::StringLiterals;

namespace
{
/// An account whose sync is on.
class StatusTest : public MonitorFixture
{
protected:
    StatusTest()
    {
        if (const QString language = qEnvironmentVariable("CORVANE_TEST_LANGUAGE"); !language.isEmpty())
            home.writeList(QNUtility::globalPreferencesPath(),
                           QVariantMap{{u"AppleLanguages"_s, QVariantList{language}}});
        setSync(User, true);
    }

    [[nodiscard]] QString titleOfPause() { return controller.menu().title(MenuItem::PauseJob); }

    const QString upToDate = u"All files are up to date"_s;
    const QString pauseTitle = u"Pause the scheduled job"_s;
};
} // namespace

// Run once for each language.
TEST_F(StatusTest, SyncLinesRestHoweverTheyCome)
{
    namespace Texts = MonitorControllerVC;
    const std::tuple<const char *, const char *, const LocalizedText &> rows[] = {
        {"Paused", "T1009", Texts::pausedTooltip},
        {"No network connectivity", "T1011", Texts::noInternetTooltip},
        {"All files are up to date", "T1001", Texts::allFilesUpToDateTooltip},
        {"The account has been cancelled", "T1015", Texts::syncAccCancelTooltip},
    };
    start();
    for (const auto &[plain, id, text] : rows) {
        EXPECT_EQ(text.text() == QLatin1StringView(plain),
                  qEnvironmentVariableIsEmpty("CORVANE_TEST_LANGUAGE"));
        for (const char *line : {plain, id}) {
            SCOPED_TRACE(line);
            syncLine(u"Uploading"_s);
            ASSERT_TRUE(iconMoves());
            syncLine(QString::fromLatin1(line));
            EXPECT_EQ(item.imageName(), u"menu_app"_s);
            EXPECT_EQ(QString::fromUtf8(home.read(path("SyncStatusMessagePath"))), text.text());
            EXPECT_FALSE(item.toolTip().endsWith(u'\n'));
        }
    }
}

TEST_F(StatusTest, TheIconMovesWhileSyncWorksAndRestsAfterwards)
{
    dark = true;
    start();
    controller.board().setStatusMenuToolTip(std::nullopt, u"Uploading"_s);
    EXPECT_EQ(item.imageName(), u"sync_menubw1_alt"_s);
    clock.advance(170ms);
    EXPECT_EQ(item.imageName(), u"sync_menubw2_alt"_s);
    EXPECT_EQ(home.read(path("SyncStatusMessagePath")), "Uploading");

    dark = false;
    controller.darkModeChanged();
    EXPECT_TRUE(iconMoves());
    EXPECT_FALSE(item.imageName().endsWith(u"_alt"_s));

    controller.board().setStatusMenuToolTip(std::nullopt, upToDate);
    EXPECT_EQ(item.imageName(), u"menu_app"_s);
    EXPECT_TRUE(item.toolTip().endsWith(u"\nCloud Drive: All files are synced"_s));
    const auto shown = item.images.size();
    clock.advance(1s);
    EXPECT_EQ(item.images.size(), shown) << "no timer is left";
}

TEST_F(StatusTest, APauseOfSyncRestsAtOnce)
{
    start();
    syncLine(u"Uploading"_s);
    ASSERT_TRUE(iconMoves());
    setSync(User, true, "1");
    syncLine(u"Paused"_s);
    EXPECT_FALSE(iconMoves());
    EXPECT_TRUE(item.toolTip().endsWith(u"Paused"_s)) << item.toolTip().toStdString();
}

TEST_F(StatusTest, ACancelledAccountLeavesItsMarkerAndNoFileIsLost)
{
    start();
    for (const char *content : {"kept", ""}) {
        content[0] ? home.write(path("CancelledAccountInfoPath"), content)
                   : void(QFile::remove(path("CancelledAccountInfoPath")));
        controller.board().setStatusMenuToolTip(std::nullopt, u"The account has been cancelled"_s);
        EXPECT_EQ(item.toolTip(), bare + u"\nCorvane \nYour account has been cancelled"_s);
        EXPECT_EQ(home.read(path("CancelledAccountInfoPath")), content);
    }
}

TEST_F(StatusTest, AnotherHostOfTheItemBringsARestingIconInLine)
{
    start();
    home.write(path("SchedulerStatusInfoPath"), "0");
    controller.statusBarDidMove();
    EXPECT_EQ(item.toolTip(), next) << "sync has not come to rest";
    controller.board().setStatusMenuToolTip(std::nullopt, upToDate);
    controller.statusBarDidMove();
    EXPECT_TRUE(item.toolTip().contains(u"You have disabled all your scheduled job(s)"_s));
}

TEST_F(StatusTest, APausedJobShowsItsIconBesideARestingSyncAndNotOverAWorkingOne)
{
    const Row<std::optional<QString>, bool> rows[] = {{"no line yet", {}, false},
                                                      {"at rest", upToDate, false},
                                                      {"network lost", u"No network connectivity"_s, false},
                                                      {"at work", u"Uploading"_s, true}};
    startWithJob();
    forEachRow(rows, [&](const auto &row) {
        if (row.given)
            syncLine(*row.given);
        click(MenuItem::PauseJob); // before the daemon has left its marker
        EXPECT_EQ(iconMoves(), row.expected);
        EXPECT_EQ(item.imageName() == u"menu_pause"_s, !row.expected);
        EXPECT_TRUE(item.toolTip().contains(u"Your Scheduled job is paused."_s));
        click(MenuItem::PauseJob);
        EXPECT_EQ(iconMoves(), row.expected);
    });
}

TEST_F(StatusTest, APassOverAPausedJobChangesNothingTwice)
{
    setJob(1);
    setPaused(true);
    start();
    syncLine(upToDate);
    clock.advance(10s);
    EXPECT_TRUE(item.toolTip().contains(u"Cloud Drive"_s)) << item.toolTip().toStdString();
    const auto told = item.toolTips.size();
    clock.advance(30s);
    EXPECT_EQ(item.toolTips.size(), told);
    EXPECT_EQ(item.imageName(), u"menu_pause"_s);
}

TEST_F(StatusTest, APassFindsWhatWasNotHeard)
{
    home.write(path("SchedulerStatusInfoPath"), "0");
    setJob(1);
    setPaused(true);
    start();
    EXPECT_EQ(shown(), u"menu_pause: "_s + paused);
    EXPECT_EQ(titleOfPause(), u"Resume the scheduled job"_s);
    setPaused(false);
    clock.advance(10s);
    EXPECT_EQ(shown(), u"menu_app: "_s + running);
    EXPECT_EQ(titleOfPause(), pauseTitle);
}

TEST_F(StatusTest, AReportShowsAgainAfterWhateverTookTheToolTip)
{
    startWithJob();
    ASSERT_TRUE(showsSoon(running));
    const Row<QVariantList, QString> rows[] = {
        {"a deleted device",
         {u"ShowDesktopNotification"_s, QVariantMap{{u"ErrorMessage"_s, u"Device deleted from account."_s}}},
         bare},
        {"a message", {u"SetToolTip"_s, QVariantMap{{u"message"_s, u"Hello"_s}}}, bare + u"\nHello"_s},
    };
    forEachRow(rows, [&](const auto &row) {
        receive(row.given);
        EXPECT_EQ(item.toolTip(), row.expected);
        report(1);
        EXPECT_TRUE(showsSoon(running)) << item.toolTip().toStdString();
    });
}

TEST_F(StatusTest, WhatALostJobLeftSaysNothingOfNow)
{
    home.write(path("SchedulerStatusInfoPath"), "2");
    setPaused(true);
    start();
    EXPECT_EQ(shown(), u"menu_app: "_s + next);
    EXPECT_EQ(titleOfPause(), pauseTitle);
}

TEST_F(StatusTest, APressHoldsUntilItsJobIsOverHoweverThatEnds)
{
    startWithJob();
    click(MenuItem::PauseJob);
    report(1); // was on its way
    settle();
    EXPECT_EQ(item.toolTip(), paused);

    setJob(3); // nobody tells
    clock.advance(20s);
    EXPECT_EQ(item.toolTip(), next);
    setJob(1);
    report(1);
    EXPECT_TRUE(showsSoon(running)) << item.toolTip().toStdString();
    clock.advance(10s);
    EXPECT_EQ(item.imageName(), u"menu_app"_s);
    EXPECT_EQ(switchText(), u"1"_s);
}

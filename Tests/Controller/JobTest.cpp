// The running job: what is heard of it, what menu and messages do to it, and where it is shown.

#include "Tests/Controller/MonitorFixture.h"

#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace
{
class JobTest : public MonitorFixture
{
protected:
    /// The next messages to the daemon, as "type" or "type action".
    QStringList sent(int count)
    {
        QStringList messages;
        for (int i = 0; i < count; ++i) {
            const QJsonObject message = QJsonDocument::fromJson(peer->receiveFrame()).object();
            const QJsonValue action = message[u"data"][u"actionType"];
            messages.append(message[u"type"].toString() +
                            (action.isUndefined() ? QString() : u" %1"_s.arg(action.toInt())));
        }
        return messages;
    }

    void setCurrentJob(const QString &user, int startType)
    {
        const QVariantMap job{{u"operationStartType"_s, startType}, {u"operationType"_s, 0}};
        home.writeList(path("CurrentJobs"), QVariantMap{{user, QVariantList{job}}});
    }

    /// The window with the progress, if it can be seen.
    static QWidget *window()
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->isVisible() && widget->findChild<QWidget *>(u"scPauseButton"_s))
                return widget;
        }
        return nullptr;
    }

    const QStringList pauseMessages{u"clientCoreOperation 1"_s, u"SetPauseState"_s};
    const QStringList resumeMessages{u"clientCoreOperation 2"_s, u"SetResumeState"_s};
    const QString interactive = u"Corvane 9.2.1\nBackup operation is in progress."_s;
};
} // namespace

TEST_F(JobTest, ReportsAreToldFromTheStartOfAJobToItsEnd)
{
    start();
    const QString halted = u"Corvane 9.2.1\nBackup operation is paused."_s;
    enum : int { TheUsers, Scheduled };
    const struct {
        const char *name;
        int kind, type, status; ///< `status` is that of the scheduled job in the archive
        bool marker;
        QString tip;
        const char *icon, *switchText;
        QString user = User;
    } rows[] = {
        {"begun", Scheduled, 0, 1, false, running, "menu_app", "1"},
        {"another account's", Scheduled, 4, 1, false, running, "menu_app", "1", u"otto"_s},
        {"paused", Scheduled, 4, 1, true, paused, "menu_pause", "2"},
        {"figures while paused", Scheduled, 1, 1, true, paused, "menu_pause", "2"},
        {"resumed, and its figures not there yet", Scheduled, 5, 1, false, bare, "menu_app", "1"},
        {"figures", Scheduled, 1, 1, false, running, "menu_app", "1"},
        {"over", Scheduled, 6, 3, false, bare, "menu_app", "1"},
        {"the user's begun", TheUsers, 0, 3, false, interactive, "menu_app", "1"},
        {"paused", TheUsers, 4, 3, false, halted, "menu_app", "1"},
        {"figures on their way", TheUsers, 1, 3, false, halted, "menu_app", "1"},
        {"resumed", TheUsers, 5, 3, false, interactive, "menu_app", "1"},
        {"over", TheUsers, 6, 3, false, next, "menu_app", "1"},
    };
    forEachRow(rows, [&](const auto &row) {
        setJob(row.status);
        setPaused(row.marker);
        report(row.type, row.user, row.kind);
        settle();
        EXPECT_EQ(item.toolTip(), row.tip);
        EXPECT_EQ(item.imageName(), QLatin1StringView(row.icon));
        EXPECT_EQ(switchText(), QLatin1StringView(row.switchText));
        EXPECT_EQ(CVSingletonForBackup::shared().scheduleBackupRunning, row.status == 1);
    });
}

TEST_F(JobTest, APassTellsOnceOfABackupBesideAPausedJob)
{
    setJob(1);
    setPaused(true);
    setCurrentJob(User, 0);
    start();
    clock.advance(10s);
    EXPECT_EQ(shown(), u"menu_pause: "_s + interactive);
    const auto told = item.toolTips.size();
    clock.advance(30s);
    EXPECT_EQ(item.toolTips.size(), told);
}

TEST_F(JobTest, AnInteractiveBackupHasItsToolTipWithoutFiguresToo)
{
    QFile::remove(path("UserDetailsPath"));
    setCurrentJob(User, 0);
    start();
    EXPECT_EQ(item.toolTips.value(0), bare);
    EXPECT_EQ(item.toolTip(), interactive);
}

TEST_F(JobTest, FiguresAfterAPassShowWhatThePassHasFound)
{
    startWithJob();
    report(1);
    settle();
    setPaused(true);
    controller.checkForTotalQuota(); // within the time for which figures rely on the look before them
    ASSERT_EQ(item.toolTip(), paused);
    report(1);
    settle();
    EXPECT_EQ(item.toolTip(), paused);
}

TEST_F(JobTest, TheMenuDoesWhatItsItemSays)
{
    startWithJob();
    click(MenuItem::PauseJob);
    EXPECT_EQ(sent(2), pauseMessages);
    EXPECT_EQ(shown(), u"menu_pause: "_s + paused);
    EXPECT_EQ(controller.menu().title(MenuItem::PauseJob), u"Resume the scheduled job"_s);
    EXPECT_EQ(switchText(), u"2"_s);
    click(MenuItem::PauseJob);
    EXPECT_EQ(sent(2), resumeMessages);
    EXPECT_EQ(controller.menu().title(MenuItem::PauseJob), u"Pause the scheduled job"_s);
    EXPECT_EQ(item.imageName(), u"menu_app"_s);
    EXPECT_EQ(switchText(), u"1"_s);

    click(MenuItem::StopJob);
    EXPECT_EQ(done, QStringList(u"ask Are you sure you wish to stop the scheduled job operation?"_s));
    answer = 1;
    click(MenuItem::StopJob);
    EXPECT_EQ(sent(1), QStringList(u"clientCoreOperation 3"_s)) << "the first answer was no and sent nothing";
    EXPECT_EQ(home.read(path("SchedulerState")), "3");
}

TEST_F(JobTest, ARemoteRequestPausesOnceAndNeedsNoWindow)
{
    startWithJob();
    ASSERT_FALSE(window());
    receive({u"SetPauseState"_s, QString()});
    EXPECT_EQ(sent(2), pauseMessages);
    setPaused(true);
    receive({u"SetPauseState"_s, QString()}); // the daemon has paused already
    receive({u"SetResumeState"_s, QString()});
    EXPECT_EQ(sent(2), resumeMessages);
}

TEST_F(JobTest, ProgressIsShownWhereTheJobBelongs)
{
    startWithJob();
    setCurrentJob(u"somebody"_s, 0);
    controller.jobReports().showProgressBtnClicked();
    EXPECT_FALSE(window());
    EXPECT_EQ(done, QStringList()) << "another account's job is nothing to show";

    setCurrentJob(User, 0);
    controller.jobReports().showProgressBtnClicked();
    EXPECT_EQ(done, QStringList({u"open"_s, u"launch Corvane"_s})) << "what cannot be opened is launched";

    setCurrentJob(u"somebody"_s, 1);
    controller.jobReports().showProgressBtnClicked();
    ASSERT_TRUE(window());
    controller.menuWillOpen();
    EXPECT_FALSE(controller.menu().isEnabled(MenuItem::ProgressCompanion)) << "the window is open";
    controller.enablePreferences();
    EXPECT_FALSE(window()) << "nothing runs for the account that has signed in";
    controller.jobReports().showSchedulerProgress();
    ASSERT_TRUE(window());
    report(6);
    ASSERT_TRUE(waitUntil([] { return !window(); }));
    controller.jobReports().showProgressBtnClicked();
    controller.jobReports().showSchedulerProgress();
    EXPECT_FALSE(window()) << "no job, no window";
}

TEST_F(JobTest, AJobThatHasNotReportedYetIsShownWhenItDoes)
{
    setJob(1);
    start();
    setCurrentJob(u"somebody"_s, 1);
    controller.jobReports().showProgressBtnClicked();
    EXPECT_FALSE(window()) << "nothing is known of the job";
    report(0);
    ASSERT_TRUE(waitUntil([] { return window() != nullptr; }));
    window()->close();
    report(0);
    settle();
    EXPECT_FALSE(window()) << "once closed it stays closed";
}

TEST_F(JobTest, TheOlderFormOfReportsReachesTheWindowToo)
{
    setJob(1);
    start();
    peer->send(TestPeer::frame(
        R"({"type":"Progress","data":{"elapsedtime":"00:00:01"},"State":"InProgress","UserName":"mona",)"
        R"("operation":"SchRestore"})"));
    ASSERT_TRUE(waitUntil([] { return CVSingletonForBackup::shared().scheduleBackupRunning; }));
    controller.jobReports().showSchedulerProgress();
    ASSERT_TRUE(window());
    EXPECT_FALSE(window()->findChild<QWidget *>(u"scPauseButton"_s)->isVisible())
        << "a restore cannot be paused";
}

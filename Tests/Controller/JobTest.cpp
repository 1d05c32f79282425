// The running job under the user's hand: what menu and messages do to it, and where it is shown.

#include "Tests/Controller/MonitorFixture.h"
#include "Utility/CVSingletonForBackup.h"

#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWidget>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
class JobTest : public MonitorFixture
{
protected:
    void SetUp() override
    {
        CVSingletonForBackup::shared().scheduleBackupRunning = false;
        setJob(1);
        start();
        report(0);
        ASSERT_TRUE(waitUntil([] { return CVSingletonForBackup::shared().scheduleBackupRunning; }));
    }

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

    void click(MenuItem menuItem)
    {
        controller.menu().action(menuItem)->trigger();
        clock.advance(0ms); // what a click asks comes after it
    }
    void tell(const char *type)
    {
        controller.didReceiveIPCMessage({QLatin1String(type), QString()},
                                        CorvaneMonitorController::Origin::BackupDaemon);
    }

    void setCurrentJob(const QString &user, int startType)
    {
        home.writeList(path("CurrentJobs"),
                       QVariantMap{{user, QVariantList{QVariantMap{{u"operationStartType"_s, startType}}}}});
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
};
} // namespace

TEST_F(JobTest, TheMenuDoesWhatItsItemSays)
{
    click(MenuItem::PauseJob);
    EXPECT_EQ(sent(2), pauseMessages);
    EXPECT_EQ(controller.menu().title(MenuItem::PauseJob), u"Resume the scheduled job"_s);
    EXPECT_EQ(item.imageName(), u"menu_pause"_s);
    EXPECT_EQ(item.toolTip(), paused);
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
    ASSERT_FALSE(window());
    tell("SetPauseState");
    EXPECT_EQ(sent(2), pauseMessages);
    setPaused(true);
    tell("SetPauseState"); // the daemon has paused already
    tell("SetResumeState");
    EXPECT_EQ(sent(2), resumeMessages);
}

TEST_F(JobTest, ProgressIsShownWhereTheJobBelongs)
{
    setCurrentJob(u"somebody"_s, 0);
    controller.showProgressBtnClicked();
    EXPECT_FALSE(window());
    EXPECT_EQ(done, QStringList()) << "another account's job is nothing to show";

    setCurrentJob(User, 0);
    controller.showProgressBtnClicked();
    EXPECT_EQ(done, QStringList({u"open"_s, u"launch Corvane"_s})) << "what cannot be opened is launched";

    setCurrentJob(u"somebody"_s, 1);
    controller.showProgressBtnClicked();
    ASSERT_TRUE(window());
    controller.refreshMenu();
    EXPECT_FALSE(controller.menu().isEnabled(MenuItem::ProgressCompanion)) << "the window is open";
    report(6);
    ASSERT_TRUE(waitUntil([] { return !window(); }));
    controller.showProgressBtnClicked();
    controller.showSchedulerProgress();
    EXPECT_FALSE(window()) << "no job, no window";
}

TEST_F(JobTest, AnAnnouncementBringsTheWindowToTheFrontAndASignInClosesIt)
{
    controller.showSchedulerProgress();
    ASSERT_TRUE(window());
    controller.enablePreferences(); // nothing runs for the account that has signed in
    EXPECT_FALSE(window());
}

TEST_F(JobTest, TheOlderFormOfReportsReachesTheWindowToo)
{
    report(6);
    ASSERT_TRUE(waitUntil([] { return !CVSingletonForBackup::shared().scheduleBackupRunning; }));
    peer->send(TestPeer::frame(
        R"({"type":"Progress","data":{"elapsedtime":"00:00:01"},"State":"InProgress","UserName":"mona",)"
        R"("operation":"SchRestore"})"));
    ASSERT_TRUE(waitUntil([] { return CVSingletonForBackup::shared().scheduleBackupRunning; }));
    controller.showSchedulerProgress();
    ASSERT_TRUE(window());
    EXPECT_FALSE(window()->findChild<QWidget *>(u"scPauseButton"_s)->isVisible())
        << "a restore cannot be paused";
}

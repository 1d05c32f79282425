#include "Platform/AtomicFile.h"
#include "Platform/Home.h"
#include "Source/Controller/CorvaneMonitorController.h"
#include "Tests/Messaging/TestPeer.h"
#include "Tests/Platform/ArchiveMaker.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/RecordingStatusItem.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"
#include "Utility/Paths/PathTable.h"

#include <QFileInfo>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{
const QString User = QStringLiteral("mona");

QString path(const char *key)
{
    return pathValue(QLatin1String(key), {User});
}

/// A signed-in user with a job for tomorrow, a daemon that listens, and a monitor that has not started yet.
class ControllerTest : public testing::Test
{
protected:
    ControllerTest()
    {
        home.writeList(path("LastUserLoginDetailsFilePath"), QVariantMap{{QStringLiteral("Username"), User}});
        home.writeList(path("UserDetailsPath"),
                       QVariantMap{{QStringLiteral("TOTALQUOTASIZE"), QStringLiteral("bdbd")},
                                   {QStringLiteral("USEDQUOTASIZE"), QStringLiteral("bb")}});
        home.writeList(path("TCPPortFile"), QVariantMap{{QStringLiteral("port"), qlonglong(listener.port())}});
        home.write(path("SchedulerStatusInfoPath"), "1");
        setJob(0);
    }

    /// The archive with one daily job of this user; `status` 1 means that it runs.
    void setJob(int status)
    {
        ArchiveMaker maker;
        const QDateTime reference(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
        const auto time = maker.date(double(reference.secsTo(clock.now().addDays(1))));
        home.write(path("SchedulerSettingsFile"),
                   maker.schedules({maker.record({{QStringLiteral("corvaneUserName"), User},
                                                  {QStringLiteral("profileName"), *consoleUser()},
                                                  {QStringLiteral("scheduleTime"), QVariant::fromValue(time)},
                                                  {QStringLiteral("frequency"), 2},
                                                  {QStringLiteral("status"), status}})}));
    }

    void setPaused(bool isPaused)
    {
        home.write(QFileInfo(path("BandwidthThrottleFilePathForTql")).path() + QStringLiteral("/pause.txt"),
                   isPaused ? "1" : "0");
    }

    void start()
    {
        controller.awakeFromNib();
        peer = listener.accept();
        ASSERT_TRUE(peer);
        ping = peer->receiveFrame();
    }

    void report(int type, const QString &user = User)
    {
        peer->send(TestPeer::frame(
            QStringLiteral(
                R"({"type":"operationProgress","userName":"%1","operationStartType":1,"progressType":%2})")
                .arg(user)
                .arg(type)
                .toUtf8()));
    }

    [[nodiscard]] bool showsSoon(const QString &text)
    {
        return waitUntil([&] { return item.toolTip() == text; });
    }

    [[nodiscard]] QString switchText() const
    {
        return QString::fromUtf8(home.read(path("SchedulerStatusInfoPath")));
    }

    TemporaryHome home;
    TestListener listener;
    ManualClock clock{QDateTime(QDate(2026, 3, 4), QTime(5, 6, 7))};
    RecordingStatusItem item;
    bool dark = false;
    CorvaneMonitorController controller{
        {.statusItem = item, .clock = clock, .isDesktopDark = [this] { return dark; }}};
    std::unique_ptr<TestPeer> peer;
    QByteArray ping;

    const QString next =
        QStringLiteral("Corvane 9.2.1\nYour next scheduled job will start on 03-05-2026 05:06");
    const QString running = QStringLiteral("Corvane 9.2.1\nScheduled Backup is in progress.");
    const QString paused = QStringLiteral("Corvane 9.2.1\nYour Scheduled job is paused.");
};
} // namespace

TEST_F(ControllerTest, AJobFromItsStartToItsEnd)
{
    start();
    EXPECT_EQ(item.toolTip(), next);
    EXPECT_EQ(item.imageName(), QStringLiteral("menu_app"));
    EXPECT_EQ(ping, QStringLiteral(
                        R"({"data":{"corvaneUserName":"mona","profileName":"%1"},"type":"PingFromMonitor"})")
                        .arg(*consoleUser())
                        .toUtf8());

    setJob(1);
    report(0);
    ASSERT_TRUE(showsSoon(running));

    setPaused(true);
    report(4);
    ASSERT_TRUE(showsSoon(paused));
    EXPECT_EQ(item.imageName(), QStringLiteral("menu_pause"));
    EXPECT_EQ(switchText(), QStringLiteral("2"));

    setPaused(false);
    report(5);
    report(1);
    ASSERT_TRUE(showsSoon(running));
    EXPECT_EQ(item.imageName(), QStringLiteral("menu_app")) << "the switch was written before the last look";
    EXPECT_EQ(switchText(), QStringLiteral("1"));

    setJob(3);
    report(6);
    ASSERT_TRUE(showsSoon(QStringLiteral("Corvane 9.2.1")));
    clock.advance(10s);
    EXPECT_EQ(item.toolTip(), next);
}

TEST_F(ControllerTest, ReportsOfOtherAccountsAreDropped)
{
    setJob(1);
    start();
    EXPECT_EQ(item.toolTip(), running);
    report(4, QStringLiteral("otto"));
    peer->send(TestPeer::frame(R"({"type":"SetToolTip","data":{"message":"Paused"}})"));
    ASSERT_TRUE(showsSoon(QStringLiteral("Corvane 9.2.1\nPaused")));
    EXPECT_EQ(switchText(), QStringLiteral("1"));
}

TEST_F(ControllerTest, JoinsAPausedJob)
{
    setJob(1);
    setPaused(true);
    start();
    EXPECT_EQ(item.toolTip(), paused);
    EXPECT_EQ(item.imageName(), QStringLiteral("menu_pause"));
}

TEST_F(ControllerTest, MessagesWithoutSenseChangeNothing)
{
    start();
    const QByteArray frames[] = {"{}",
                                 "[]",
                                 "\"SetToolTip\"",
                                 "not json",
                                 R"({"type":7,"data":{}})",
                                 R"({"type":"SetToolTip"})",
                                 R"({"type":"SetToolTip","data":"x"})",
                                 R"({"type":"SetToolTip","data":{"message":5}})",
                                 R"({"type":"operationProgress"})",
                                 R"({"type":"operationProgress","userName":5,"progressType":"x"})"};
    for (const QByteArray &frame : frames)
        peer->send(TestPeer::frame(frame));
    peer->send(TestPeer::frame(R"({"type":"SetToolTip","data":{"message":"after all that"}})"));
    ASSERT_TRUE(showsSoon(QStringLiteral("Corvane 9.2.1\nafter all that")));
    EXPECT_EQ(item.toolTips.filter(QStringLiteral("after")).size(), 1);
    EXPECT_EQ(item.toolTips.count(next), item.toolTips.size() - 1);
}

TEST_F(ControllerTest, AFirstStartWithoutAnyFile)
{
    const TemporaryHome empty;
    controller.awakeFromNib();
    EXPECT_EQ(item.toolTip(), QStringLiteral("Corvane 9.2.1"));
    EXPECT_EQ(item.imageName(), QStringLiteral("menu_app"));
}

TEST_F(ControllerTest, TheIconMovesWhileSyncWorksAndRestsAfterwards)
{
    home.writeList(path("SyncStateFilePath"), QVariantMap{{User, true}});
    home.writeList(
        path("LoggedSyncDetailsUserPath"),
        QVariantMap{{QStringLiteral("Pause"), QStringLiteral("0")}, {QStringLiteral("Re-initialize"), false}});
    dark = true;
    start();
    controller.setStatusMenuToolTip(std::nullopt, QStringLiteral("Uploading"));
    EXPECT_EQ(item.imageName(), QStringLiteral("sync_menubw1_alt"));
    clock.advance(170ms);
    EXPECT_EQ(item.imageName(), QStringLiteral("sync_menubw2_alt"));
    EXPECT_EQ(home.read(path("SyncStatusMessagePath")), "Uploading");

    dark = false;
    controller.darkModeChanged();
    EXPECT_TRUE(item.imageName().startsWith(QStringLiteral("sync_menubw")));
    EXPECT_FALSE(item.imageName().endsWith(QStringLiteral("_alt")));

    controller.setStatusMenuToolTip(std::nullopt, QStringLiteral("All files are up to date"));
    EXPECT_EQ(item.imageName(), QStringLiteral("menu_app"));
    EXPECT_TRUE(item.toolTip().endsWith(QStringLiteral("\nCloud Drive: All files are synced")));
    const auto shown = item.images.size();
    clock.advance(1s);
    EXPECT_EQ(item.images.size(), shown) << "no timer is left";
}

TEST_F(ControllerTest, ACancelledAccountLeavesItsMarkerAndNoFileIsLost)
{
    home.writeList(path("SyncStateFilePath"), QVariantMap{{User, true}});
    home.writeList(path("LoggedSyncDetailsUserPath"),
                   QVariantMap{{QStringLiteral("Pause"), false}, {QStringLiteral("Re-initialize"), false}});
    start();
    const QString line = QStringLiteral("The account has been cancelled");
    home.write(path("CancelledAccountInfoPath"), "kept");
    controller.setStatusMenuToolTip(std::nullopt, line);
    EXPECT_EQ(item.toolTip(), QStringLiteral("Corvane 9.2.1\nCorvane \nYour account has been cancelled"));
    EXPECT_EQ(home.read(path("CancelledAccountInfoPath")), "kept");
    QFile::remove(path("CancelledAccountInfoPath"));
    controller.setStatusMenuToolTip(std::nullopt, line);
    EXPECT_TRUE(QFileInfo::exists(path("CancelledAccountInfoPath")));
}

#include "Tests/Controller/MonitorFixture.h"

using namespace std::chrono_literals;

namespace
{
class ControllerTest : public MonitorFixture
{
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

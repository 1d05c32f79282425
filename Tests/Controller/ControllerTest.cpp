#include "Tests/Controller/MonitorFixture.h"
#include "Utility/QNUtility.h"

using namespace Qt::StringLiterals;
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
    EXPECT_EQ(item.imageName(), u"menu_app"_s);
    EXPECT_EQ(ping, uR"({"data":{"corvaneUserName":"mona","profileName":"%1"},"type":"PingFromMonitor"})"_s
                        .arg(*consoleUser())
                        .toUtf8());

    setJob(1);
    report(0);
    ASSERT_TRUE(showsSoon(running));

    setPaused(true);
    report(4);
    ASSERT_TRUE(showsSoon(paused));
    EXPECT_EQ(item.imageName(), u"menu_pause"_s);
    EXPECT_EQ(switchText(), u"2"_s);

    setPaused(false);
    report(5);
    report(1);
    ASSERT_TRUE(showsSoon(running));
    EXPECT_EQ(item.imageName(), u"menu_app"_s) << "the switch was written before the last look";
    EXPECT_EQ(switchText(), u"1"_s);

    setJob(3);
    report(6);
    ASSERT_TRUE(showsSoon(u"Corvane 9.2.1"_s));
    clock.advance(10s);
    EXPECT_EQ(item.toolTip(), next);
}

TEST_F(ControllerTest, ReportsOfOtherAccountsAreDropped)
{
    setJob(1);
    start();
    EXPECT_EQ(item.toolTip(), running);
    report(4, u"otto"_s);
    peer->send(TestPeer::frame(R"({"type":"SetToolTip","data":{"message":"Paused"}})"));
    ASSERT_TRUE(showsSoon(u"Corvane 9.2.1\nPaused"_s));
    EXPECT_EQ(switchText(), u"1"_s);
}

TEST_F(ControllerTest, JoinsAPausedJob)
{
    setJob(1);
    setPaused(true);
    start();
    EXPECT_EQ(item.toolTip(), paused);
    EXPECT_EQ(item.imageName(), u"menu_pause"_s);
}

TEST_F(ControllerTest, AFirstStartWithoutAnyFile)
{
    const TemporaryHome empty;
    controller.awakeFromNib();
    EXPECT_EQ(item.toolTip(), u"Corvane 9.2.1"_s);
    EXPECT_EQ(item.imageName(), u"menu_app"_s);
}

TEST_F(ControllerTest, TheIconMovesWhileSyncWorksAndRestsAfterwards)
{
    home.writeList(path("SyncStateFilePath"), QVariantMap{{User, true}});
    home.writeList(path("LoggedSyncDetailsUserPath"),
                   QVariantMap{{u"Pause"_s, u"0"_s}, {u"Re-initialize"_s, false}});
    dark = true;
    start();
    controller.setStatusMenuToolTip(std::nullopt, u"Uploading"_s);
    EXPECT_EQ(item.imageName(), u"sync_menubw1_alt"_s);
    clock.advance(170ms);
    EXPECT_EQ(item.imageName(), u"sync_menubw2_alt"_s);
    EXPECT_EQ(home.read(path("SyncStatusMessagePath")), "Uploading");

    dark = false;
    controller.darkModeChanged();
    EXPECT_TRUE(item.imageName().startsWith(u"sync_menubw"_s));
    EXPECT_FALSE(item.imageName().endsWith(u"_alt"_s));

    controller.setStatusMenuToolTip(std::nullopt, u"All files are up to date"_s);
    EXPECT_EQ(item.imageName(), u"menu_app"_s);
    EXPECT_TRUE(item.toolTip().endsWith(u"\nCloud Drive: All files are synced"_s));
    const auto shown = item.images.size();
    clock.advance(1s);
    EXPECT_EQ(item.images.size(), shown) << "no timer is left";
}

TEST_F(ControllerTest, WindowsFollowTheDesktopAndThePanelItself)
{
    dark = true;
    EXPECT_TRUE(controller.applicationIsOnTheDarkSide());
    EXPECT_FALSE(controller.windowsAreOnTheDarkSide());
    desktopDark = true;
    controller.windowLookChanged();
    controller.darkModeChanged();
    EXPECT_TRUE(controller.windowsAreOnTheDarkSide());
    EXPECT_EQ(done, QStringList({QStringLiteral("colours"), QStringLiteral("colours")}));

    home.writeList(QNUtility::globalPreferencesPath(),
                   QVariantMap{{QStringLiteral("AppleInterfaceStyle"), QStringLiteral("Light")}});
    EXPECT_FALSE(controller.applicationIsOnTheDarkSide()) << "the setting has the first word in both";
    EXPECT_FALSE(controller.windowsAreOnTheDarkSide());
}

TEST_F(ControllerTest, AMessageStandsUntilItsWindowCloses)
{
    controller.displayWindowWithAlertMsg(QStringLiteral("Sign in first."));
    EXPECT_EQ(done, QStringList(QStringLiteral("alert Sign in first.")));
    EXPECT_TRUE(controller.hasOpenAlertWindow());
    controller.alertWindowDidClose();
    EXPECT_FALSE(controller.hasOpenAlertWindow());
}

TEST_F(ControllerTest, ACancelledAccountLeavesItsMarkerAndNoFileIsLost)
{
    home.writeList(path("SyncStateFilePath"), QVariantMap{{User, true}});
    home.writeList(path("LoggedSyncDetailsUserPath"),
                   QVariantMap{{u"Pause"_s, false}, {u"Re-initialize"_s, false}});
    start();
    const QString line = u"The account has been cancelled"_s;
    home.write(path("CancelledAccountInfoPath"), "kept");
    controller.setStatusMenuToolTip(std::nullopt, line);
    EXPECT_EQ(item.toolTip(), u"Corvane 9.2.1\nCorvane \nYour account has been cancelled"_s);
    EXPECT_EQ(home.read(path("CancelledAccountInfoPath")), "kept");
    QFile::remove(path("CancelledAccountInfoPath"));
    controller.setStatusMenuToolTip(std::nullopt, line);
    EXPECT_TRUE(QFileInfo::exists(path("CancelledAccountInfoPath")));
}

#include "Tests/Controller/MonitorFixture.h"
#include "Utility/QNUtility.h"

using ControllerTest = MonitorFixture;

TEST_F(ControllerTest, TheItemStandsBeforeAnythingElseOfTheStart)
{
    start();
    ASSERT_TRUE(item.imageWhenShown);
    EXPECT_EQ(*item.imageWhenShown, item.images.value(0));
    EXPECT_EQ(item.toolTipsWhenShown, 0) << "texts are worked out later";
    EXPECT_EQ(ping, uR"({"data":{"corvaneUserName":"mona","profileName":"%1"},"type":"PingFromMonitor"})"_s
                        .arg(*consoleUser())
                        .toUtf8());
}

TEST_F(ControllerTest, AFirstStartWithoutAnyFile)
{
    const TemporaryHome empty;
    controller.awakeFromNib();
    EXPECT_EQ(shown(), u"menu_app: "_s + bare);
}

TEST_F(ControllerTest, APortOutOfRangeIsTracedOnceAndWaitedOut)
{
    home.writeList(path("TCPPortFile"), QVariantMap{{u"port"_s, qlonglong(70000)}});
    controller.awakeFromNib();
    clock.advance(60s);
    EXPECT_EQ(trace().count(u"published a port that there is not"_s), 1);
    EXPECT_EQ(trace().count(u"Lost the connection"_s), 0);
    home.writeList(path("TCPPortFile"), QVariantMap{{u"port"_s, qlonglong(listener.port())}});
    EXPECT_TRUE(listener.accept()->receiveFrame().contains("PingFromMonitor"));
    clock.advance(20s);
    EXPECT_EQ(trace().count(u"published a port that there is not (6 more)"_s), 1);
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
    EXPECT_EQ(done, QStringList({u"colours"_s, u"colours"_s}));

    home.writeList(QNUtility::globalPreferencesPath(), QVariantMap{{u"AppleInterfaceStyle"_s, u"Light"_s}});
    EXPECT_FALSE(controller.applicationIsOnTheDarkSide()) << "the setting has the first word in both";
    EXPECT_FALSE(controller.windowsAreOnTheDarkSide());
}

TEST_F(ControllerTest, AMessageStandsUntilItsWindowCloses)
{
    controller.displayWindowWithAlertMsg(u"Sign in first."_s);
    EXPECT_EQ(done, QStringList(u"alert Sign in first."_s));
    EXPECT_TRUE(controller.hasOpenAlertWindow());
    controller.alertWindowDidClose();
    EXPECT_FALSE(controller.hasOpenAlertWindow());
}

TEST_F(ControllerTest, HelpIsAPageOfTheDeploymentsHost)
{
    start();
    click(MenuItem::Help);
    EXPECT_EQ(done, QStringList(u"url https://127.0.0.1:18443/help/mac-help/default.htm"_s));
}

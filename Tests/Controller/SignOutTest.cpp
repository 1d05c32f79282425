#include "Tests/Controller/MonitorFixture.h"

namespace
{
/// An account with sync and protection that announces its sign-out while its record still stands.
class SignOutTest : public MonitorFixture
{
protected:
    void SetUp() override
    {
        setSync(User, true);
        home.write(path("TqlUserDetails"), "");
    }

    [[nodiscard]] bool isSeen(MenuItem menuItem) { return controller.menu().action(menuItem)->isVisible(); }
    [[nodiscard]] bool showsSomebody() { return controller.menu().isEnabled(MenuItem::Scheduler); }

    /// Whatever may bring icon, tool tip and menu in line.
    void lookAround()
    {
        controller.checkForTotalQuota();
        controller.menuWillOpen();
        controller.board().moveStartedToolTipMessage();
        syncLine(u"Uploading"_s);
        controller.reloadPreferencesFromApp();
        controller.sync().enableDisbleSync({{u"x"_s, u"EnableSync"_s}});
        clock.advance(10s);
    }
};
} // namespace

TEST_F(SignOutTest, NothingOfTheAccountIsLeftWhileItsRecordStillStands)
{
    start();
    syncLine(u"Uploading"_s);
    controller.menuWillOpen();
    ASSERT_TRUE(item.toolTip().contains(u"Cloud Drive: Uploading"_s));
    ASSERT_TRUE(isSeen(MenuItem::CloudDrive) && isSeen(MenuItem::Protection));

    controller.resetMonitorUI();
    for (const bool later : {false, true}) {
        SCOPED_TRACE(later);
        if (later)
            lookAround();
        EXPECT_EQ(shown(), u"menu_app: "_s + bare);
        for (const MenuItem gone : {MenuItem::CloudDrive, MenuItem::Protection, MenuItem::ProgressCompanion})
            EXPECT_FALSE(isSeen(gone));
        for (const MenuItem off : {MenuItem::Scheduler, MenuItem::RemoteManagement})
            EXPECT_FALSE(controller.menu().isEnabled(off));
    }
    const auto images = item.images.size();
    clock.advance(2s);
    EXPECT_EQ(item.images.size(), images) << "no animation goes on";

    receive({u"RemoteManage"_s, QVariantMap{{u"ChannelType"_s, u"remoteInstall"_s}}});
    EXPECT_FALSE(trace().contains(u"remote install"_s));
}

TEST_F(SignOutTest, TheNextAccountHasNoMoveAndNoFullDriveOfTheOneBefore)
{
    start();
    controller.board().moveStartedToolTipMessage();
    receive(QString(), "505");
    syncLine(u"Uploading"_s);
    ASSERT_TRUE(item.toolTip().contains(u"Upgrade Storage"_s));
    controller.resetMonitorUI();

    setRecord(u"otto"_s);
    setSync(u"otto"_s, false);
    syncLine(u"Uploading"_s);
    EXPECT_FALSE(item.toolTip().contains(u"Cloud Drive"_s))
        << "only a move shows the line of a sync that is off";
    controller.sync().enableDisbleSync({{u"x"_s, u"EnableSync"_s}});
    syncLine(u"Uploading"_s);
    EXPECT_TRUE(item.toolTip().endsWith(u"Cloud Drive: Uploading"_s)) << item.toolTip().toStdString();
}

TEST_F(SignOutTest, ASignInAnotherNameOrANewRecordEndsIt)
{
    start();
    controller.resetMonitorUI();
    controller.enablePreferences();
    EXPECT_TRUE(showsSomebody()) << "an announced sign-in";

    controller.resetMonitorUI();
    setRecord(u"otto"_s);
    clock.advance(10s);
    EXPECT_TRUE(showsSomebody()) << "somebody else";

    home.write(path("CancelledAccountInfoPath"), "");
    controller.resetMonitorUI();
    removeRecord();
    clock.advance(10s);
    EXPECT_FALSE(showsSomebody());
    EXPECT_EQ(item.toolTip(), bare);
    setRecord(User);
    clock.advance(10s);
    EXPECT_TRUE(showsSomebody()) << "a record that is new";
    EXPECT_FALSE(QFileInfo::exists(path("CancelledAccountInfoPath")));
}

TEST_F(SignOutTest, ARunningJobGoesOnBeingShownAndCanBePaused)
{
    startWithJob();
    controller.resetMonitorUI();
    EXPECT_EQ(item.toolTip(), running);
    clock.advance(10s);
    EXPECT_EQ(item.toolTip(), running);
    EXPECT_TRUE(controller.menu().isEnabled(MenuItem::ShowProgress));
    EXPECT_TRUE(controller.menu().isEnabled(MenuItem::PauseJob));
    for (const bool isPaused : {true, false}) {
        setPaused(isPaused);
        clock.advance(10s);
        EXPECT_EQ(item.toolTip(), isPaused ? paused : running);
    }
    click(MenuItem::PauseJob);
    EXPECT_EQ(shown(), u"menu_pause: "_s + paused);
    EXPECT_EQ(switchText(), u"2"_s);

    setJob(3);
    report(6);
    ASSERT_TRUE(showsSoon(bare));
    clock.advance(10s);
    EXPECT_EQ(shown(), u"menu_app: "_s + bare);

    setJob(1); // one that begins and ends unheard
    clock.advance(10s);
    EXPECT_EQ(item.toolTip(), running);
    setJob(3);
    clock.advance(10s);
    EXPECT_EQ(item.toolTip(), bare);
}

TEST_F(SignOutTest, WhatNobodyAnnouncesIsFollowedAsWell)
{
    start();
    syncLine(u"Uploading"_s);
    removeRecord();
    clock.advance(10s);
    EXPECT_EQ(shown(), u"menu_app: "_s + bare);
    EXPECT_FALSE(isSeen(MenuItem::CloudDrive));

    setRecord(User);
    controller.menuWillOpen();
    EXPECT_TRUE(isSeen(MenuItem::CloudDrive));
    setRecord(u"otto"_s);
    clock.advance(10s);
    EXPECT_FALSE(isSeen(MenuItem::CloudDrive)) << "the other account's";
    EXPECT_NE(item.toolTip(), next);
}

#include "Tests/Progress/ProgressFixture.h"

namespace
{
using Self = CVScheduleProgressViewController;

class ProgressControl : public ProgressFixture
{
protected:
    void SetUp() override
    {
        start();
        figures(R"("percentage":"42")");
        role.calls.clear();
    }

    void setThrottle(const QVariantMap &settings)
    {
        home.writeList(pathOf("DeamonPreferencePath"),
                       QVariantMap{{u"mona"_s, settings}, {u"otto"_s, QVariantMap{{u"own"_s, 5}}}});
    }
};
} // namespace

TEST_F(ProgressControl, APressChangesEverythingAtOnceAndSendsTwoMessages)
{
    view.SCpauseresume(Self::PauseTag);
    EXPECT_EQ(role.calls, QStringList({u"core operation 1"_s, u"paused"_s,
                                       uR"({"data":"","type":"SetPauseState"} tag 7)"_s}));
    EXPECT_EQ(role.switchWord(), u"2"_s);
    EXPECT_TRUE(shown().isPaused);
    EXPECT_EQ(shown().titleEmailLabel, u"mona : Scheduled Backup is Paused..."_s);

    role.calls.clear();
    view.SCpauseresume(Self::ResumeTag);
    EXPECT_EQ(role.calls, QStringList({u"core operation 2"_s, u"resumed"_s, u"icon, switch 1"_s,
                                       uR"({"data":"","type":"SetResumeState"} tag 8)"_s}));
    EXPECT_FALSE(shown().isPaused);
}

TEST_F(ProgressControl, StoppingAsksFirst)
{
    const QString state = pathOf("SchedulerState");
    home.write(pathOf("SchedulerStatusInfoPath"), "2");
    view.stopSchedulerSubmenu();
    EXPECT_EQ(questions, QStringList(u"Are you sure you wish to stop the scheduled job operation? "_s));
    EXPECT_EQ(role.calls, QStringList());
    EXPECT_EQ(home.read(state), QByteArray());
    EXPECT_EQ(role.switchWord(), u"2"_s);
    EXPECT_TRUE(CVSingletonForBackup::shared().scheduleBackupRunning);

    answer = [] { return true; };
    view.stopSchedulerSubmenu();
    EXPECT_EQ(role.calls, QStringList(u"core operation 3"_s));
    EXPECT_EQ(home.read(state), "3");
    EXPECT_EQ(role.switchWord(), u"1"_s);
    EXPECT_FALSE(CVSingletonForBackup::shared().scheduleBackupRunning);
    EXPECT_TRUE(role.schedules.isScheduleBackupStoped);

    figures(R"("percentage":"43")");
    EXPECT_FALSE(CVSingletonForBackup::shared().scheduleBackupRunning)
        << "its last reports do not bring it back";
    start();
    EXPECT_FALSE(role.schedules.isScheduleBackupStoped);
}

TEST_F(ProgressControl, AJobThatEndsWhileTheQuestionStandsIsNotStopped)
{
    answer = [this] {
        report(6);
        start();
        role.calls.clear();
        return true;
    };
    view.stopSchedulerSubmenu();
    EXPECT_EQ(role.calls, QStringList());
    EXPECT_TRUE(CVSingletonForBackup::shared().scheduleBackupRunning) << "the next job goes on";
}

TEST_F(ProgressControl, TheSliderIsStoredAndTheDaemonTold)
{
    const QString told =
        uR"({"data":{"IsBandwidthThrottleChanged":"Changed","profileName":"console","userName":"Mona"},)"
        uR"("type":"bandwidthThrottleChanged"} tag 100)"_s;
    setThrottle({{u"EnableBandwidthThrottleKey"_s, u"1"_s},
                 {u"BandwidthThrottleAutoPauseKey"_s, u"20"_s},
                 {u"BandwidthThrottleForIdleKey"_s, 95}});
    view.loadThrottleSettings();
    EXPECT_EQ(shown().bandwidthPercent, 20);
    EXPECT_TRUE(shown().autoPauseIconIsShown);
    EXPECT_TRUE(shown().bandwidthHelpIsShown);

    view.sliderValueChanged(96);
    view.sliderDidFinishMoving();
    EXPECT_FALSE(shown().autoPauseIconIsShown) << "both are above the threshold now";
    EXPECT_EQ(role.calls, QStringList()) << "nobody has signed in here";

    home.writeList(pathOf("LoginDetailsFilePath"), QVariantMap{{u"Username"_s, u"Mona"_s}});
    view.sliderValueChanged(50);
    view.sliderDidFinishMoving();
    EXPECT_EQ(role.calls, QStringList(told));
    EXPECT_TRUE(home.read(pathOf("DeamonPreferencePath")).contains("<string>50</string>"));
    EXPECT_TRUE(home.read(pathOf("DeamonPreferencePath")).contains("<key>own</key>"));

    role.calls.clear();
    setThrottle({{u"BandwidthThrottleKey"_s, u"30"_s}});
    view.sliderDidFinishMoving();
    EXPECT_EQ(role.calls, QStringList()) << "settings that say nothing of bandwidth are left alone";
    EXPECT_EQ(shown().bandwidthPercent, 50);
}

TEST_F(ProgressControl, TheRunningJobDecidesOnTheBandwidthGroup)
{
    setThrottle({{u"EnableBandwidthThrottleKey"_s, false}, {u"BandwidthThrottleKey"_s, 30}});
    const struct {
        const char *name;
        int backupType;
        QString username;
        bool before, after;
    } rows[] = {
        {"online", 0, u"mona: console"_s, false, true},
        {"local", 1, u"mona: console"_s, true, false},
        {"network drive", 2, u"mona: console"_s, false, true},
        {"of somebody else", 1, u"otto: console"_s, true, true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        setRunningJob(1); // hides it
        view.updateBandwidthMacInUseValueReceivedFromRM();
        ASSERT_FALSE(shown().bandwidthBgViewIsShown);
        if (row.before)
            view.loadThrottleSettings();
        setRunningJob(row.backupType, row.username);
        view.updateBandwidthMacInUseValueReceivedFromRM();
        EXPECT_EQ(shown().bandwidthBgViewIsShown, row.after);
    }
}

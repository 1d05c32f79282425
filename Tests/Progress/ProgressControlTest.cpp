#include "Tests/Progress/ProgressFixture.h"
#include "Tests/Support/ForEachRow.h"

namespace
{

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
        home.writeList(pathOf("DeamonPreferencePath"), QVariantMap{{u"mona"_s, settings}});
    }
};
} // namespace

TEST_F(ProgressControl, APressChangesEverythingAtOnceAndSendsTwoMessages)
{
    view.SCpauseresume(JobOrder::Pause);
    EXPECT_EQ(role.calls, QStringList({u"core operation 1"_s, u"paused, switch 2"_s,
                                       uR"({"data":"","type":"SetPauseState"} tag 7)"_s}));
    EXPECT_TRUE(shown().isPaused);
    EXPECT_EQ(shown().titleEmailLabel, u"mona : Scheduled Backup is Paused..."_s);

    role.calls.clear();
    view.SCpauseresume(JobOrder::Resume);
    EXPECT_EQ(role.calls, QStringList({u"core operation 2"_s, u"resumed, switch 1"_s,
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
    EXPECT_EQ(home.read(state) + role.switchWord().toUtf8(), "2");

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
    EXPECT_TRUE(shown().autoPauseIconIsShown && shown().bandwidthHelpIsShown);

    view.sliderValueChanged(96);
    view.loadThrottleSettings(); // a report while the slider moves
    view.sliderDidFinishMoving(96);
    EXPECT_FALSE(shown().autoPauseIconIsShown) << "both are above the threshold now";
    EXPECT_EQ(role.calls, QStringList()) << "nobody has signed in here";

    home.writeList(pathOf("LoginDetailsFilePath"), QVariantMap{{u"Username"_s, u"Mona"_s}});
    view.sliderDidFinishMoving(50);
    EXPECT_EQ(role.calls, QStringList(told));
    EXPECT_TRUE(home.read(pathOf("DeamonPreferencePath")).contains("<string>50</string>"));

    role.calls.clear();
    setThrottle({{u"BandwidthThrottleKey"_s, u"30"_s}});
    view.sliderDidFinishMoving(40);
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
    forEachRow(rows, [this](const auto &row) {
        setRunningJob(1); // hides it
        view.updateBandwidthMacInUseValueReceivedFromRM();
        ASSERT_FALSE(shown().bandwidthBgViewIsShown);
        if (row.before)
            view.loadThrottleSettings();
        setRunningJob(row.backupType, row.username);
        view.updateBandwidthMacInUseValueReceivedFromRM();
        EXPECT_EQ(shown().bandwidthBgViewIsShown, row.after);
    });
}

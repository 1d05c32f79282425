#include "Tests/Progress/ProgressFixture.h"

namespace
{
using Pane = ProgressDisplay::Pane;

class ProgressReports : public ProgressFixture
{
};

bool &jobRuns()
{
    return CVSingletonForBackup::shared().scheduleBackupRunning;
}
} // namespace

TEST_F(ProgressReports, AJobFromItsStartToItsEnd)
{
    start();
    EXPECT_TRUE(jobRuns());
    EXPECT_EQ(shown().pane, Pane::Preparing);
    EXPECT_EQ(shown().preparingText, u"Preparing file list..."_s);
    EXPECT_TRUE(shown().scPauseButtonIsShown);
    EXPECT_TRUE(shown().scFileCountViewIsShown);

    report(3);
    EXPECT_EQ(shown().preparingText, u"Retrying..."_s);

    figures(
        R"("percentage":"42","transferSpeed":"4.7 MB/s","estimatedTime":"00:02:00","elapsedtime":"00:01:00",)"
        R"("filename":"/a/b.txt","tansferMode":"Uploading","filesize":"4 KB","dedupRemainingFiles":"10",)"
        R"("dedupCompletedFiles":"7")");
    EXPECT_EQ(shown().pane, Pane::Main);
    EXPECT_EQ(shown().titleEmailLabel, u"mona : Scheduled Backup is in progress"_s);
    EXPECT_EQ(shown().scProgressText, (DisplayText{u"42 %"_s, true}));
    EXPECT_EQ(shown().progressPercent, 42);
    EXPECT_EQ(shown().scSpeedText, u"4.7 MB/s"_s);
    EXPECT_EQ(shown().scFilePath, u"Uploading /a/b.txt  (4 KB)"_s);
    EXPECT_EQ(shown().scRemainingFiles_Dedup, u"10"_s);
    EXPECT_EQ(shown().scCompletedFiles_Dedup, u"7"_s);
    EXPECT_EQ(shown().scElapsedTime_Dedup, (DisplayText{u"00:01:00"_s, true}));
    EXPECT_EQ(shown().scEstimatedTime_Dedup, u"00:02:00"_s);

    report(3);
    EXPECT_EQ(shown().scProgressStatus, (DisplayText{u"Retrying..."_s, true}));
    figures(R"("percentage":"43")");
    EXPECT_FALSE(shown().scProgressStatus.isShown);

    report(4);
    EXPECT_TRUE(shown().isPaused);
    EXPECT_EQ(shown().titleEmailLabel, u"mona : Scheduled Backup is Paused..."_s);
    EXPECT_EQ(role.switchWord(), u"2"_s);
    report(5);
    EXPECT_FALSE(shown().isPaused);
    EXPECT_EQ(role.switchWord(), u"1"_s);

    report(4);
    role.calls.clear();
    report(6);
    EXPECT_EQ(role.calls, QStringList({u"resumed"_s, u"icon, switch 1"_s, u"ended"_s}))
        << "a job that ended while paused leaves no pause behind";
    EXPECT_FALSE(jobRuns());
    EXPECT_FALSE(shown().isPaused);
    EXPECT_EQ(shown().scElapsedTime, u"00:00:00"_s);
    EXPECT_EQ(shown().scFilePath + shown().scSpeedText + shown().scProgressText.text, QString());
    EXPECT_FALSE(shown().scPauseButtonIsShown);
    EXPECT_EQ(shown().progressPercent, 0);
}

TEST_F(ProgressReports, WhatAReportDoesNotTellStaysAsItWas)
{
    start();
    figures(
        R"("percentage":"42","transferSpeed":"4.7 MB/s","elapsedtime":"00:01:00","filename":"a","tansferMode":"v",)"
        R"("filesize":"1 B")");
    const ProgressDisplay before = shown();
    for (const QByteArray members :
         {"", R"("percentage":43)", R"("percentage":"many")", R"("percentage":"-1")", R"("transferSpeed":null)",
          R"("elapsedtime":{"x":1})", R"("filename":"b","filesize":"2 B")",
          R"("filename":7,"tansferMode":"w")"}) {
        SCOPED_TRACE(members.toStdString());
        figures(members);
        EXPECT_EQ(shown(), before);
    }
    for (const QByteArray payload :
         {R"({"progressType":1})", R"({"progressType":1,"operationData":[]})", R"({"progressType":"4"})",
          R"({"progressType":7})", R"({"progressType":-1})",
          R"({"progressType":1,"operationData":{"progressData":5}})"}) {
        SCOPED_TRACE(payload.toStdString());
        raw(payload);
        EXPECT_EQ(shown(), before);
    }
    figures(R"("percentage":"x","transferSpeed":"5 MB/s")");
    EXPECT_EQ(shown().scSpeedText, u"5 MB/s"_s) << "one bad figure does not cost the others";
}

TEST_F(ProgressReports, PercentValues)
{
    const struct {
        const char *name;
        QByteArray begin, percentage;
        QString text;
        bool isShown;
        int bar;
        QString estimate;
    } rows[] = {
        {"shown", R"("showPercentage":false)", "10", u"10 %"_s, true, 10, u"soon"_s},
        {"above the whole", R"("showPercentage":1)", "250", u"100 %"_s, true, 100, u"soon"_s},
        {"zero keeps what stands", R"("showPercentage":1)", "0", u""_s, true, 0, u"Calculating..."_s},
        {"below zero", R"("showPercentage":1)", "-5", u""_s, true, 0, u"soon"_s},
        {"no percentage announced", R"("x":1)", "10", u""_s, false, 0, u"Calculating..."_s},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        start(row.begin);
        figures(R"("estimatedTime":"soon","percentage":")" + row.percentage + '"');
        EXPECT_EQ(shown().scProgressText, (DisplayText{row.text, row.isShown}));
        EXPECT_EQ(shown().progressPercent, row.bar);
        EXPECT_EQ(shown().scEstimatedTime_Dedup, row.estimate);
    }
    start(R"("x":1)");
    report(2);
    figures(R"("percentage":"10")");
    EXPECT_EQ(shown().scProgressText, (DisplayText{u"10 %"_s, true}))
        << "the end of the enumeration brings percents";
}

TEST_F(ProgressReports, TheKindOfOperationDecidesOnGroupsAndButtons)
{
    start(R"("showPercentage":1)", 1);
    EXPECT_TRUE(shown().backupInfoBgViewIsShown);
    EXPECT_FALSE(shown().scFileCountViewIsShown);
    EXPECT_TRUE(shown().scPauseButtonIsShown);
    for (const int restore : {2, 3}) {
        start(R"("showPercentage":1)", restore);
        EXPECT_FALSE(shown().scPauseButtonIsShown);
    }
    setUserRecord({{u"Username"_s, u"mona"_s}, {u"dedup"_s, u"off"_s}});
    start();
    EXPECT_TRUE(shown().backupInfoBgViewIsShown);

    home.writeList(pathOf("DeamonPreferencePath"),
                   QVariantMap{{u"mona"_s, QVariantMap{{u"EnableBandwidthThrottleKey"_s, false},
                                                       {u"BandwidthThrottleKey"_s, u"60"_s}}}});
    start();
    EXPECT_TRUE(shown().bandwidthBgViewIsShown);
    EXPECT_EQ(shown().bandwidthPercent, 60);
    figures(R"("elapsedtime":"00:00:09","estimatedTime":"00:01:00","dedupRemainingFiles":"5")",
            R"(,"operationDetailedType":9)");
    EXPECT_FALSE(shown().bandwidthBgViewIsShown);
    EXPECT_FALSE(shown().scFileCountViewIsShown);
    EXPECT_EQ(shown().scElapsedTime, u"00:00:09"_s);
    EXPECT_EQ(shown().scEstimatedTime.text, u"00:01:00"_s);
    EXPECT_EQ(shown().scRemainingFiles_Dedup, QString());
    view.SCpauseresume(CVScheduleProgressViewController::PauseTag);
    EXPECT_FALSE(shown().bandwidthBgViewIsShown) << "a pause does not bring it back";
}

TEST_F(ProgressReports, AJobThatRunsAlreadyIsJoined)
{
    role.launched = true;
    report(1);
    EXPECT_FALSE(jobRuns()) << "nothing to show yet";
    figures(R"("percentage":"42")");
    EXPECT_TRUE(jobRuns());
    EXPECT_FALSE(role.launched);
    EXPECT_EQ(shown().pane, Pane::Main);
    EXPECT_EQ(shown().titleEmailLabel, u"mona : Scheduled Backup is in progress"_s);
    EXPECT_EQ(shown().scProgressText, (DisplayText{u"42 %"_s, true}));

    jobRuns() = false; // its end was lost with the channel, and so was the start of the next
    figures(R"("percentage":"5")");
    EXPECT_TRUE(jobRuns());
    EXPECT_TRUE(shown().scPauseButtonIsShown);
}

TEST_F(ProgressReports, AJobThatIsPausedAlreadyIsJoined)
{
    role.launched = true;
    report(4, R"(,"operationType":0,"operationData":{"pauseState":1})");
    EXPECT_TRUE(jobRuns());
    EXPECT_EQ(shown().pane, Pane::Main) << "a paused job prepares nothing";
    EXPECT_EQ(shown().titleEmailLabel, u"mona : Scheduled Backup is Paused..."_s);
    report(5);
    EXPECT_EQ(shown().pane, Pane::Preparing) << "until its figures come";
}

TEST_F(ProgressReports, APauseIsNotTheNextJobs)
{
    start();
    figures(R"("percentage":"42")");
    report(4);
    start(); // the end of the first one was lost
    EXPECT_FALSE(shown().isPaused);
    EXPECT_EQ(shown().pane, Pane::Preparing);
    EXPECT_EQ(role.switchWord(), u"1"_s);

    report(4);
    view.showscheduleprogress({QVariantMap(), u"Start"_s, u"SchOnlineBackup"_s, u"mona"_s});
    EXPECT_FALSE(shown().isPaused);
}

TEST_F(ProgressReports, WithoutAControllerTheViewStillFollows)
{
    view.mainController = nullptr;
    home.write(pathOf("SchedulerStatusInfoPath"), "2");
    report(5);
    EXPECT_EQ(role.switchWord(), u"1"_s);
    start();
    figures(R"("percentage":"1")");
    report(4);
    EXPECT_TRUE(shown().isPaused);
    EXPECT_EQ(role.calls, QStringList());
}

TEST_F(ProgressReports, TheOlderForm)
{
    const auto send = [this](const QString &phase, const QVariantMap &figures = {},
                             const QString &kind = u"SchOnlineBackup"_s, const QVariantList &rest = {}) {
        view.showscheduleprogress(QVariantList{figures, phase, kind, u"mona"_s} + rest);
    };
    const QVariantMap whole{{u"elapsedtime"_s, u"00:00:05"_s}, {u"percentage"_s, u"30"_s},
                            {u"transferSpeed"_s, u"1 MB/s"_s}, {u"filename"_s, u"a"_s},
                            {u"tansferMode"_s, u"v"_s},        {u"filesize"_s, u"1 B"_s},
                            {u"showPercentage"_s, 1}};
    view.showscheduleprogress({whole, u"Start"_s, u"SchOnlineBackup"_s});
    EXPECT_FALSE(jobRuns()) << "four entries at least";

    send(u"Start"_s);
    EXPECT_TRUE(jobRuns());
    EXPECT_EQ(shown().pane, Pane::Preparing);
    EXPECT_FALSE(shown().scPauseButtonIsShown);
    send(u"Retry"_s);
    EXPECT_EQ(shown().preparingText, u"Retrying..."_s);
    send(u"SizeCalculated"_s);
    EXPECT_EQ(shown().pane, Pane::Main);
    send(u"InProgress"_s, whole);
    EXPECT_EQ(shown().scProgressText, (DisplayText{u"30 %"_s, true}));
    EXPECT_EQ(shown().scFilePath, u"v a  (1 B)"_s);
    EXPECT_EQ(shown().titleEmailLabel, u"mona : Scheduled Backup is in progress"_s);
    EXPECT_TRUE(shown().scFileCountViewIsShown);
    EXPECT_TRUE(shown().scPauseButtonIsShown);

    send(u"InProgress"_s, whole, u"SchOnlineBackup"_s, {u"yes"_s});
    EXPECT_TRUE(shown().backupInfoBgViewIsShown);
    EXPECT_TRUE(shown().bandwidthBgViewIsShown);
    send(u"InProgress"_s, {{u"percentage"_s, 99}, {u"showPercentage"_s, 1}});
    EXPECT_EQ(shown().progressPercent, 30) << "no elapsed time, no report";
    QVariantMap unknown = whole;
    unknown.remove(u"showPercentage"_s);
    send(u"InProgress"_s, unknown);
    EXPECT_FALSE(shown().scProgressText.isShown);
    EXPECT_EQ(shown().scEstimatedTime.text, u"Calculating..."_s);

    send(u"InProgress"_s, {{u"Pause"_s, 1}, {u"elapsedtime"_s, u"00:00:06"_s}});
    EXPECT_TRUE(shown().isPaused);
    send(u"InProgress"_s, whole, u"SchRestore"_s);
    EXPECT_FALSE(shown().scPauseButtonIsShown);
    send(u"Success"_s);
    EXPECT_FALSE(jobRuns());
    EXPECT_TRUE(role.calls.endsWith(u"ended"_s));
    send(u"Nonsense"_s);
    EXPECT_FALSE(jobRuns());
}

#include "Tests/Progress/ProgressFixture.h"
#include "Tests/Support/ForEachRow.h"

#include <tuple>
#include <utility>

namespace
{
using Pane = ProgressDisplay::Pane;

class ProgressReports : public ProgressFixture
{
protected:
    void pausedReport() { report(4, R"(,"operationType":0,"operationData":{"pauseState":1})"); }
    void noJobIsScheduled() { home.write(pathOf("SchedulerSettingsFile"), ArchiveMaker().schedules({})); }
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
    EXPECT_EQ(seen(), u"Preparing file list... | counts | pause"_s);
    report(3);
    EXPECT_EQ(seen(), u"Retrying... | counts | pause"_s);

    figures(
        R"("percentage":"42","transferSpeed":"4.7 MB/s","estimatedTime":"00:02:00","elapsedtime":"00:01:00",)"
        R"("filename":"/a/b.txt","tansferMode":"Uploading","filesize":"4 KB","dedupRemainingFiles":"10",)"
        R"("dedupCompletedFiles":"7")");
    EXPECT_EQ(seen(), u"mona : Scheduled Backup is in progress | 42 % | counts | pause"_s);
    EXPECT_EQ(shown().progressPercent, 42);
    EXPECT_EQ(shown().scSpeedText, u"4.7 MB/s"_s);
    EXPECT_EQ(shown().scFilePath, u"Uploading /a/b.txt  (4 KB)"_s);
    EXPECT_EQ(shown().scRemainingFiles_Dedup + u'|' + shown().scCompletedFiles_Dedup, u"10|7"_s);
    EXPECT_EQ(shown().scElapsedTime_Dedup, (DisplayText{u"00:01:00"_s, true}));
    EXPECT_EQ(shown().scEstimatedTime_Dedup, u"00:02:00"_s);

    report(3);
    EXPECT_EQ(shown().scProgressStatus, (DisplayText{u"Retrying..."_s, true}));
    figures(R"("percentage":"43")");
    EXPECT_FALSE(shown().scProgressStatus.isShown);

    report(4);
    EXPECT_EQ(seen(), u"mona : Scheduled Backup is Paused... | 43 % | counts | pause | paused"_s);
    EXPECT_EQ(role.switchWord(), u"2"_s);
    report(5);
    EXPECT_EQ(seen(), u"mona : Scheduled Backup is in progress | 43 % | counts | pause"_s);
    EXPECT_EQ(role.switchWord(), u"1"_s);

    report(4);
    role.calls.clear();
    report(6);
    EXPECT_EQ(role.calls, QStringList{u"ended"_s});
    EXPECT_EQ(role.switchWord(), u"1"_s) << "a job that ended while paused leaves no pause behind";
    EXPECT_FALSE(jobRuns() || shown().isPaused || shown().scPauseButtonIsShown);
    EXPECT_EQ(shown().scElapsedTime, u"00:00:00"_s);
    EXPECT_EQ(shown().scFilePath + shown().scSpeedText + shown().scProgressText.text, QString());
    EXPECT_EQ(shown().progressPercent, 0);
}

TEST_F(ProgressReports, WhatAReportDoesNotTellStaysAsItWas)
{
    start();
    figures(
        R"("percentage":"42","transferSpeed":"4.7 MB/s","elapsedtime":"00:01:00","filename":"a","tansferMode":"v",)"
        R"("filesize":"1 B")");
    const ProgressDisplay before = shown();
    for (const char *members : {"", R"("percentage":43)", R"("percentage":"many")", R"("percentage":"-1")",
                                R"("transferSpeed":null)", R"("elapsedtime":{"x":1})",
                                R"("filename":"b","filesize":"2 B")", R"("filename":7,"tansferMode":"w")"}) {
        figures(members);
        EXPECT_EQ(shown(), before) << members;
    }
    for (const char *payload : {R"({"progressType":1})", R"({"progressType":1,"operationData":[]})",
                                R"({"progressType":"4"})", R"({"progressType":7})", R"({"progressType":-1})",
                                R"({"progressType":1,"operationData":{"progressData":5}})"}) {
        raw(payload);
        EXPECT_EQ(shown(), before) << payload;
    }
    figures(R"("percentage":"x","transferSpeed":"5 MB/s")");
    EXPECT_EQ(shown().scSpeedText, u"5 MB/s"_s) << "one bad figure does not cost the others";
}

TEST_F(ProgressReports, PercentValues)
{
    const struct {
        const char *name;
        QByteArray begin, percentage;
        DisplayText text;
        int bar;
        QString estimate;
    } rows[] = {
        {"shown", R"("showPercentage":false)", "10", {u"10 %"_s, true}, 10, u"soon"_s},
        {"above the whole", R"("showPercentage":1)", "250", {u"100 %"_s, true}, 100, u"soon"_s},
        {"zero keeps what stands", R"("showPercentage":1)", "0", {u""_s, true}, 0, u"Calculating..."_s},
        {"below zero", R"("showPercentage":1)", "-5", {u""_s, true}, 0, u"soon"_s},
        {"no percentage announced", R"("x":1)", "10", {u""_s, false}, 0, u"Calculating..."_s},
    };
    forEachRow(rows, [this](const auto &row) {
        start(row.begin);
        figures(R"("estimatedTime":"soon","percentage":")" + row.percentage + '"');
        EXPECT_EQ(shown().scProgressText, row.text);
        EXPECT_EQ(shown().progressPercent, row.bar);
        EXPECT_EQ(shown().scEstimatedTime_Dedup, row.estimate);
    });
    report(2); // the end of the enumeration
    figures(R"("percentage":"10")");
    EXPECT_EQ(shown().scProgressText, (DisplayText{u"10 %"_s, true}));
}

TEST_F(ProgressReports, TheKindOfOperationDecidesOnGroupsAndButtons)
{
    start(R"("showPercentage":1)", 1);
    EXPECT_EQ(seen(), u"Preparing file list... | info | pause"_s);
    for (const int restore : {2, 3}) {
        start(R"("showPercentage":1)", restore);
        EXPECT_FALSE(shown().scPauseButtonIsShown);
    }
    setUserRecord({{u"Username"_s, u"mona"_s}, {u"dedup"_s, u"off"_s}});
    home.writeList(pathOf("DeamonPreferencePath"),
                   QVariantMap{{u"mona"_s, QVariantMap{{u"EnableBandwidthThrottleKey"_s, false},
                                                       {u"BandwidthThrottleKey"_s, u"60"_s}}}});
    start();
    EXPECT_EQ(seen(), u"Preparing file list... | info | bandwidth | pause"_s);
    EXPECT_EQ(shown().bandwidthPercent, 60);
    figures(R"("elapsedtime":"00:00:09","estimatedTime":"00:01:00","dedupRemainingFiles":"5")",
            R"(,"operationDetailedType":9)");
    EXPECT_EQ(seen(), u"mona : Scheduled Backup is in progress | info | pause"_s);
    EXPECT_EQ(shown().scElapsedTime + u'|' + shown().scEstimatedTime.text, u"00:00:09|00:01:00"_s);
    EXPECT_EQ(shown().scRemainingFiles_Dedup, QString());
    view.SCpauseresume(JobOrder::Pause);
    EXPECT_FALSE(shown().bandwidthBgViewIsShown) << "a pause does not bring it back";
}

TEST_F(ProgressReports, AJobThatRunsAlreadyIsJoined)
{
    role.launched = true;
    setRunningJob(0);
    report(1);
    EXPECT_FALSE(jobRuns()) << "nothing to show yet";
    figures(R"("percentage":"42")");
    EXPECT_TRUE(jobRuns());
    EXPECT_FALSE(role.launched);
    EXPECT_EQ(seen(), u"mona : Scheduled Backup is in progress | 42 % | counts | pause"_s);

    jobRuns() = false; // its end was lost with the channel, and so was the start of the next
    figures(R"("percentage":"5")");
    EXPECT_TRUE(jobRuns());
    EXPECT_TRUE(shown().scPauseButtonIsShown);

    jobRuns() = false;
    role.launched = true;
    pausedReport();
    EXPECT_TRUE(jobRuns());
    EXPECT_TRUE(seen().startsWith(u"mona : Scheduled Backup is Paused..."_s))
        << "a paused job prepares nothing";
    report(5);
    EXPECT_EQ(shown().pane, Pane::Preparing) << "until its figures come";
}

TEST_F(ProgressReports, ALateReportDoesNotBringBackAJobThatIsOver)
{
    setRunningJob(0);
    start();
    report(6);
    noJobIsScheduled();
    for (const bool launched : {false, true}) {
        role.launched = launched;
        figures(R"("percentage":"99")");
        pausedReport();
        EXPECT_FALSE(jobRuns());
    }
}

TEST_F(ProgressReports, AStartOrAJoinEndsAPauseThatNobodyConfirms)
{
    const struct {
        const char *name, *operationData;
        int type;
        bool marker;
        QStringList calls;
    } rows[] = {
        {"a new job", R"("showPercentage":1)", 0, false, {u"resumed, switch 1"_s}},
        {"a job that is joined", R"("showPercentage":1)", 1, false, {u"resumed, switch 1"_s}},
        {"paused by its report", R"("pauseState":1)", 0, false, {u"paused, switch 2"_s}},
        {"joined, paused by its report", R"("pauseState":1)", 1, false, {u"paused, switch 2"_s}},
        {"paused by its marker", R"("showPercentage":1)", 0, true, {}},
        {"joined, paused by its marker", R"("showPercentage":1)", 1, true, {}},
    };
    setRunningJob(0);
    forEachRow(rows, [this](const auto &row) {
        home.write(pathOf("SchedulerStatusInfoPath"), "2"); // left by a program that was away meanwhile
        jobRuns() = false;
        role.launched = true;
        role.pauseMarker = row.marker;
        role.calls.clear();
        report(row.type, QByteArray(R"(,"operationData":{)") + row.operationData + "}");
        EXPECT_EQ(role.calls, row.calls);
    });
}

TEST_F(ProgressReports, WhateverComesShowsAsIfEachReportHadBeenLookedAt)
{
    home.writeList(pathOf("DeamonPreferencePath"),
                   QVariantMap{{u"mona"_s, QVariantMap{{u"EnableBandwidthThrottleKey"_s, false},
                                                       {u"BandwidthThrottleKey"_s, u"60"_s}}}});
    const QByteArray whole = R"("percentage":"%1","transferSpeed":"%1 B/s","estimatedTime":"%1 s",)"
                             R"("filename":"/%1","tansferMode":"v","filesize":"%1 B")";
    const auto figuresOf = [&](const QByteArray &percentage, const QByteArray &rest = {}) {
        return [=, this] { figures(QByteArray(whole).replace("%1", percentage), rest); };
    };
    const std::pair<const char *, std::function<void()>> acts[] = {
        {"42 %", figuresOf("42")},
        {"0 %", figuresOf("0")},
        {"-1 %", figuresOf("-1")},
        {"speed alone", [this] { figures(R"("transferSpeed":"9 B/s")"); }},
        {"no file counts", figuresOf("7", R"(,"operationDetailedType":9)")},
        {"figures of none", [this] { report(1); }},
        {"enumerated", [this] { report(2); }},
        {"retries", [this] { report(3); }},
        {"paused", [this] { report(4); }},
        {"complete", [this] { report(6); }},
        {"slider", [this] { view.sliderDidFinishMoving(60); }},
        {"older form",
         [this] {
             view.showscheduleprogress({QVariantMap{{u"elapsedtime"_s, u"5"_s}, {u"transferSpeed"_s, u"5"_s}},
                                        u"InProgress"_s, u"SchOnlineBackup"_s, u"mona"_s});
         }},
    };
    const auto after = [&](std::initializer_list<const std::function<void()> *> sequence, const char *begin,
                           bool looks) {
        report(5);
        start(begin);
        figures(R"("elapsedtime":"1")"); // the first show the main pane at once
        figuresOf("41")();
        for (const auto *act : sequence) {
            (*act)();
            if (looks)
                std::ignore = shown();
        }
        return shown();
    };
    for (const auto &[first, one] : acts) {
        for (const auto &[second, two] : acts) {
            for (const char *begin : {R"("x":1)", R"("showPercentage":1)"})
                EXPECT_EQ(after({&one, &two}, begin, false), after({&one, &two}, begin, true))
                    << begin << ", " << first << ", " << second;
        }
    }
}

TEST_F(ProgressReports, TheFileLineIsOfOneReport)
{
    start();
    figures(R"("filename":"/a","tansferMode":"Uploading","filesize":"1 KB")");
    figures(R"("filename":"/b","filesize":"9 KB")"); // before the line was shown
    EXPECT_EQ(shown().scFilePath, u"Uploading /a  (1 KB)"_s);
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

TEST_F(ProgressReports, JobsThatAreSwitchedOffStayOff)
{
    home.write(pathOf("SchedulerStatusInfoPath"), "0");
    start();
    answer = [] { return true; };
    const std::function<void()> acts[] = {
        [this] { report(4); },
        [this] { report(5); },
        [this] { view.SCpauseresume(JobOrder::Pause); },
        [this] { view.SCpauseresume(JobOrder::Resume); },
        [this] { report(6); },
        [this] { view.stopSchedulerSubmenu(); },
    };
    for (const auto &act : acts) {
        act();
        EXPECT_EQ(role.switchWord(), u"0"_s);
    }
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
    EXPECT_EQ(seen(), u"Preparing file list... | info"_s);
    send(u"Retry"_s);
    EXPECT_EQ(shown().preparingText, u"Retrying..."_s);
    send(u"SizeCalculated"_s);
    EXPECT_EQ(shown().pane, Pane::Main);
    send(u"InProgress"_s, whole);
    EXPECT_EQ(seen(), u"mona : Scheduled Backup is in progress | 30 % | counts | pause"_s);
    EXPECT_EQ(shown().scFilePath, u"v a  (1 B)"_s);

    send(u"InProgress"_s, whole, u"SchOnlineBackup"_s, {u"yes"_s});
    EXPECT_EQ(seen(), u"mona : Scheduled Backup is in progress | 30 % | info | bandwidth | pause"_s);
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

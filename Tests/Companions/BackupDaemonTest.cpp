#include "Companions/BackupDaemon/BackupJob.h"
#include "Companions/BackupDaemon/DaemonFiles.h"

#include "Companions/Common/PropertyList.h"
#include "Companions/MainApplication/MainApplication.h"
#include "Tests/Companions/TemporaryHome.h"

#include <QFileInfo>

#include <gtest/gtest.h>

namespace
{
const QString Ana = QStringLiteral("ana@example.com");

/// A home with an account signed in and a daily job of hers between two jobs of others.
class DaemonFilesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        AccountFiles(TemporaryHome::table()).signIn({.name = Ana});
        const QString login = loginName();
        writeSchedules(schedules(), {ScheduleBook::makeJob(Ana, QStringLiteral("guest"), m_now.addSecs(-900),
                                                           Frequency::Daily),
                                     ScheduleBook::makeJob(Ana, login, m_now.addSecs(-600), Frequency::Daily),
                                     ScheduleBook::makeJob(Ana, login, m_now.addSecs(-700), Frequency::Once)});
    }
    [[nodiscard]] QString schedules() const { return m_home.file(QStringLiteral("schedules.plist")); }
    [[nodiscard]] std::vector<int> statuses() const
    {
        std::vector<int> found;
        for (const ScheduleRecord &record : readSchedules(schedules()))
            found.push_back(record.value(QStringLiteral("status")).toInt());
        return found;
    }
    [[nodiscard]] QString text(const QString &name) const { return readTextFile(m_home.file(name)); }

    const QDateTime m_now = QDateTime(QDate(2026, 11, 20), QTime(12, 0));
    TemporaryHome m_home;
    DaemonFiles m_files{TemporaryHome::table()};
};
} // namespace

TEST_F(DaemonFilesTest, JobMarksTheRepeatingScheduleOfThisLoginAndMovesItOn)
{
    ASSERT_TRUE(m_files.setScheduleStatus(Ana, JobStatus::InProgress, m_now));
    EXPECT_EQ(statuses(), (std::vector<int>{0, 1, 0}));
    ASSERT_TRUE(m_files.setScheduleStatus(Ana, JobStatus::Completed, m_now));
    EXPECT_EQ(statuses(), (std::vector<int>{0, 3, 0}));
    EXPECT_EQ(readSchedules(schedules()).at(1).value(QStringLiteral("scheduleTime")).toDateTime(),
              QDateTime(QDate(2026, 11, 21), QTime(11, 50)));
    EXPECT_FALSE(m_files.setScheduleStatus(QStringLiteral("nobody"), JobStatus::InProgress, m_now));
}

TEST_F(DaemonFilesTest, EndedImmediateJobLeavesTheArchive)
{
    writeSchedules(schedules(), {ScheduleBook::makeJob(Ana, loginName(), m_now, Frequency::Once)});
    ASSERT_TRUE(m_files.setScheduleStatus(Ana, JobStatus::InProgress, m_now));
    ASSERT_TRUE(m_files.setScheduleStatus(Ana, JobStatus::Completed, m_now));
    EXPECT_TRUE(statuses().empty());
}

TEST_F(DaemonFilesTest, StateOfADeadDaemonIsPutRight)
{
    m_files.setScheduleStatus(Ana, JobStatus::InProgress, m_now);
    m_files.setPauseMarker(Ana, true);
    m_files.setSchedulerState(SchedulerState::Paused);
    m_files.setCurrentJob(RunningJob{Ana});
    ASSERT_EQ(text(Ana + QStringLiteral("/throttle/pause.txt")), QStringLiteral("1"));

    m_files.clearStaleState(m_now);
    EXPECT_EQ(statuses(), (std::vector<int>{0, 2, 0}));
    EXPECT_EQ(text(Ana + QStringLiteral("/throttle/pause.txt")), QStringLiteral("0"));
    EXPECT_EQ(text(QStringLiteral("status.txt")), QStringLiteral("1"));
    EXPECT_TRUE(readPropertyList(m_home.file(QStringLiteral("jobs.plist"))).toMap().isEmpty());

    m_files.setSchedulerState(SchedulerState::Disabled);
    m_files.clearStaleState(m_now);
    EXPECT_EQ(text(QStringLiteral("status.txt")), QStringLiteral("0"))
        << "the user's switch is not the daemon's";
}

TEST_F(DaemonFilesTest, CurrentJobListsItsAccount)
{
    m_files.setCurrentJob(RunningJob{Ana, 1, 0});
    const QVariantMap jobs = readPropertyList(m_home.file(QStringLiteral("jobs.plist"))).toMap();
    const QVariantMap job = jobs.value(Ana).toList().value(0).toMap();
    EXPECT_EQ(job.value(QStringLiteral("operationStartType")), QVariant(qlonglong(1)));
    EXPECT_EQ(job.value(QStringLiteral("operationType")), QVariant(qlonglong(0)));
    EXPECT_EQ(readPropertyList(m_home.file(QStringLiteral("application.plist")))
                  .toMap()
                  .value(QStringLiteral("Schedule")),
              Ana);
}

TEST(BackupJob, ReportsFollowTheWork)
{
    using namespace std::chrono_literals;
    BackupJob job({.account = Ana, .length = 10s});
    const auto figure = [&job](const char *key) {
        const QJsonObject data = job.report(ReportKind::Figures).value(u"operationData").toObject();
        return data.value(u"progressData").toObject().value(QLatin1StringView(key)).toString();
    };
    EXPECT_EQ(figure("percentage"), QStringLiteral("0"));
    job.advance(4200ms);
    EXPECT_EQ(figure("percentage"), QStringLiteral("42"));
    EXPECT_EQ(figure("elapsedtime"), QStringLiteral("00:00:04"));
    job.setPaused(true);
    job.advance(5s);
    EXPECT_EQ(figure("percentage"), QStringLiteral("42"));
    EXPECT_TRUE(job.report(ReportKind::Paused).value(u"operationData").toObject().contains(u"pauseState"));
    job.setPaused(false);
    job.advance(1h);
    EXPECT_TRUE(job.isFinished());
    EXPECT_EQ(figure("percentage"), QStringLiteral("100"));

    job.setPaused(true);
    EXPECT_TRUE(job.report(ReportKind::Figures).value(u"operationData").toObject().contains(u"pauseState"))
        << "who joins a paused job builds its view from figures";

    const QJsonObject start = job.report(ReportKind::Started);
    EXPECT_EQ(start.value(u"type").toString(), QStringLiteral("operationProgress"));
    EXPECT_EQ(start.value(u"progressType").toInt(-1), 0);
    EXPECT_EQ(start.value(u"operationStartType").toInt(-1), 1);
    EXPECT_FALSE(start.value(u"operationData").toObject().contains(u"showPercentage"));
}

namespace
{
QJsonObject figuresOf(const BackupJob &job)
{
    return job.report(ReportKind::Figures).value(u"operationData")[u"progressData"].toObject();
}
} // namespace

TEST(BackupJob, HalfTheLineIsHalfTheSpeedAndTwiceTheTime)
{
    using namespace std::chrono_literals;
    const struct {
        const char *name;
        JobKind kind;
        int bandwidth;
        const char *speed, *left, *percentage;
    } rows[] = {
        {"whole", JobKind::OnlineBackup, 100, "1.2 MB/s", "00:01:30", "10"},
        {"half", JobKind::OnlineBackup, 50, "600 KB/s", "00:03:10", "5"},
        {"none would never end", JobKind::OnlineBackup, 0, "12 KB/s", "02:46:30", "0"},
        {"a disk is no line", JobKind::LocalBackup, 50, "1.2 MB/s", "00:01:30", "10"},
        {"a restore is no backup", JobKind::Restore, 50, "1.2 MB/s", "00:01:30", "10"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        BackupJob job({.account = Ana, .kind = row.kind, .length = 100s});
        job.setBandwidth(row.bandwidth);
        job.advance(10s);
        const QJsonObject figures = figuresOf(job);
        EXPECT_EQ(figures.value(u"transferSpeed").toString().toStdString(), row.speed);
        EXPECT_EQ(figures.value(u"estimatedTime").toString().toStdString(), row.left);
        EXPECT_EQ(figures.value(u"elapsedtime").toString(), QStringLiteral("00:00:10"));
        EXPECT_EQ(figures.value(u"percentage").toString().toStdString(), row.percentage);
    }
}

TEST(BackupJob, KindsAndCountsAreTold)
{
    using namespace std::chrono_literals;
    const struct {
        const char *name;
        JobKind kind;
        int operation, detail;
        const char *verb, *older;
        bool counts;
    } rows[] = {
        {"online", JobKind::OnlineBackup, 0, 0, "Backing up", "SchOnlineBackup", true},
        {"local", JobKind::LocalBackup, 0, 8, "Backing up", "SchLocalBackup", false},
        {"restore", JobKind::Restore, 2, 0, "Restoring", "SchRestore", true},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        BackupJob job({.account = Ana, .kind = row.kind, .length = 100s});
        EXPECT_EQ(job.report(ReportKind::Figures).value(u"operationType").toInt(), row.operation);
        EXPECT_EQ(job.report(ReportKind::Figures).value(u"operationDetailedType").toInt(), row.detail);
        EXPECT_EQ(job.olderReport(QStringLiteral("Start"), {}).value(u"operation").toString().toStdString(),
                  row.older);
        for (int step = 0; step <= 3; ++step) {
            const QJsonObject figures = figuresOf(job);
            EXPECT_EQ(figures.value(u"tansferMode").toString().toStdString(), row.verb);
            EXPECT_EQ(figures.contains(u"dedupCompletedFiles"), row.counts);
            if (row.counts) {
                EXPECT_EQ(figures.value(u"dedupRemainingFiles").toString().toInt() +
                              figures.value(u"dedupCompletedFiles").toString().toInt(),
                          1248);
            }
            job.advance(33s);
        }
        EXPECT_EQ(figuresOf(job).value(u"dedupRemainingFiles").toString(QStringLiteral("0")),
                  QStringLiteral("0"));
    }
}

TEST(BackupJob, ListsItsFilesBeforeItWorks)
{
    using namespace std::chrono_literals;
    BackupJob job({.account = Ana, .length = 10s});
    job.setPreparation(2s);
    job.advance(1500ms);
    EXPECT_TRUE(job.isPreparing());
    EXPECT_TRUE(figuresOf(job).isEmpty());
    job.setPaused(true);
    job.advance(1h);
    EXPECT_TRUE(job.isPreparing());
    job.setPaused(false);
    job.advance(1500ms);
    EXPECT_FALSE(job.isPreparing());
    EXPECT_EQ(figuresOf(job).value(u"percentage").toString(), QStringLiteral("10"));
    EXPECT_EQ(figuresOf(job).value(u"elapsedtime").toString(), QStringLiteral("00:00:03"));
}

TEST(BackupJob, OlderReportHasItsOwnKeys)
{
    BackupJob job({.account = Ana});
    job.setPaused(true);
    const QJsonObject message = job.olderReport(QStringLiteral("InProgress"), QStringLiteral("disk"));
    EXPECT_EQ(message.keys().join(u' '), QStringLiteral("State UserName data destination operation type"));
    EXPECT_EQ(message.value(u"State").toString(), QStringLiteral("InProgress"));
    EXPECT_EQ(message.value(u"UserName").toString(), Ana);
    EXPECT_TRUE(message.value(u"data").toObject().contains(u"Pause"));
    EXPECT_TRUE(message.value(u"data").toObject().contains(u"showPercentage"));
    EXPECT_FALSE(job.olderReport(QStringLiteral("Start"), {}).contains(u"destination"));
}

TEST_F(DaemonFilesTest, EachKindOfJobTakesItsOwnSchedule)
{
    ScheduleBook(schedules()).fillWithDemoSet(Ana, loginName(), m_now);
    const auto timeOf = [this](JobKind kind) {
        return m_files.scheduleFor(Ana, kind)->value(QStringLiteral("scheduleTime")).toDateTime();
    };
    EXPECT_EQ(timeOf(JobKind::OnlineBackup), QDateTime(QDate(2026, 11, 21), QTime(2, 30)));
    EXPECT_EQ(timeOf(JobKind::LocalBackup), QDateTime(QDate(2026, 11, 23), QTime(22, 15)));
    EXPECT_EQ(timeOf(JobKind::Restore), QDateTime(QDate(2026, 11, 30), QTime(4, 0)));
}

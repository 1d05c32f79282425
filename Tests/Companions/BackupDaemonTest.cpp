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
    BackupJob job(Ana, BackupJob::Origin::Schedule, 10s);
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

    const QJsonObject start = job.report(ReportKind::Started);
    EXPECT_EQ(start.value(u"type").toString(), QStringLiteral("operationProgress"));
    EXPECT_EQ(start.value(u"progressType").toInt(-1), 0);
    EXPECT_EQ(start.value(u"operationStartType").toInt(-1), 1);
    EXPECT_FALSE(start.value(u"operationData").toObject().contains(u"showPercentage"));
}

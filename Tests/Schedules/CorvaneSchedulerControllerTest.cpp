#include "Classes/Schedules/CorvaneSchedulerController.h"

#include "Platform/AtomicFile.h"
#include "Tests/Platform/ArchiveMaker.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{
struct World : SchedulerRole {
    std::optional<QString> account = QStringLiteral("ann");
    std::optional<QString> login = QStringLiteral("login");
    bool engine = false;
    std::optional<QString> path;

    std::optional<QString> lastLoggedInUser() const override { return account; }
    std::optional<QString> consoleUser() const override { return login; }
    bool isTQL() const override { return engine; }
    std::optional<QString> schedulerSettingsFile() const override { return path; }
    QDateTime now() const override { return QDateTime(QDate(2026, 11, 22), QTime(12, 0), Qt::UTC); }
};

class SchedulerTest : public testing::Test
{
protected:
    SchedulerTest()
    {
        m_world.path = m_home.filePath(QStringLiteral("schedules"));
        m_scheduler.mainController = &m_world;
    }

    /// A record of the world's user, `minutes` after its noon.
    PropertyListUid record(int minutes, QVariantMap fields)
    {
        constexpr double Noon = 817041600; // 2026-11-22 12:00 UTC, from 2001-01-01
        fields.insert(QStringLiteral("scheduleTime"), QVariant::fromValue(m_maker.date(Noon + 60.0 * minutes)));
        fields.insert(QStringLiteral("corvaneUserName"), QStringLiteral("ann"));
        fields.insert(QStringLiteral("username"), QStringLiteral("eng: login"));
        fields.insert(QStringLiteral("profileName"), QStringLiteral("login"));
        return m_maker.record(fields);
    }

    void store(const QList<PropertyListUid> &records)
    {
        ASSERT_TRUE(AtomicFile::write(*m_world.path, m_maker.schedules(records)));
    }

    QTemporaryDir m_home;
    World m_world;
    ArchiveMaker m_maker;
    CorvaneSchedulerController m_scheduler;
};

const QString Frequency = QStringLiteral("frequency");
const QString Status = QStringLiteral("status");
} // namespace

TEST_F(SchedulerTest, AnswersFollowTheFile)
{
    EXPECT_FALSE(m_scheduler.nextScheduledItem());
    EXPECT_TRUE(m_scheduler.corvaneSchedulerDetailsForAllUsers()->empty());

    store({record(90, {{Frequency, 2}}), record(30, {{Frequency, 3}}), record(5, {{Frequency, 0}})});
    EXPECT_EQ(m_scheduler.nextScheduledItem()->scheduleTime, m_world.now().addSecs(30 * 60));
    EXPECT_EQ(m_scheduler.getImmediateScheduledItem()->scheduleTime, m_world.now().addSecs(5 * 60));
    EXPECT_EQ(m_scheduler.corvaneSchedulerDetailsForAllUsers()->size(), 3U);
    EXPECT_EQ(m_scheduler.corvaneSchedulerDetails(QStringLiteral("eng: login")).size(), 3U);
    EXPECT_TRUE(m_scheduler.hasScheduledOnlineBackup(QStringLiteral("ann")));
    EXPECT_FALSE(m_scheduler.hasScheduledOnlineBackup(QStringLiteral("bob")));

    m_world.account.reset();
    EXPECT_FALSE(m_scheduler.nextScheduledItem());
    m_world.account = QStringLiteral("ann");

    store({record(10, {{Frequency, 2}})});
    EXPECT_EQ(m_scheduler.nextScheduledItem()->scheduleTime, m_world.now().addSecs(10 * 60));
    EXPECT_FALSE(m_scheduler.getImmediateScheduledItem());

    ASSERT_TRUE(AtomicFile::write(*m_world.path, "damaged"));
    EXPECT_FALSE(m_scheduler.nextScheduledItem());
    m_scheduler.mainController = nullptr;
    EXPECT_FALSE(m_scheduler.nextScheduledItem());
    EXPECT_FALSE(m_scheduler.hasScheduledOnlineBackup(QStringLiteral("ann")));
}

TEST_F(SchedulerTest, RunningJobTellsWhoseAndWhich)
{
    const auto running = [this](int type) {
        return record(0, {{Status, 1}, {QStringLiteral("scheduleType"), type}});
    };
    EXPECT_EQ(m_scheduler.currentscheduleuser, std::nullopt);
    store({m_maker.add(QStringLiteral("no item")), record(0, {}), running(1)});
    EXPECT_TRUE(m_scheduler.isScheduleBackupInProgress());
    EXPECT_EQ(m_scheduler.currentscheduleuser, QStringLiteral("ann"));
    EXPECT_EQ(m_scheduler.currentScheduleType, QNXScheduleType::restore);

    m_world.engine = true;
    store({running(0)});
    EXPECT_TRUE(m_scheduler.isScheduleBackupInProgress());
    EXPECT_EQ(m_scheduler.currentscheduleuser, QStringLiteral("eng"));
    EXPECT_EQ(m_scheduler.currentScheduleType, QNXScheduleType::backup);

    store({record(0, {})}); // the job has ended, others remain
    EXPECT_FALSE(m_scheduler.isScheduleBackupInProgress());
    EXPECT_EQ(m_scheduler.currentscheduleuser, QStringLiteral("eng"));

    store({});
    EXPECT_FALSE(m_scheduler.isScheduleBackupInProgress());
    EXPECT_EQ(m_scheduler.currentscheduleuser, QString(QStringLiteral("")));
}

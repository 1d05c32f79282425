#include "Classes/Schedules/CorvaneSchedulerController.h"

#include "Platform/AtomicFile.h"
#include "Tests/Platform/ArchiveMaker.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
struct World : SchedulerRole {
    std::optional<QString> account = u"ann"_s;
    bool engine = false;
    std::optional<QString> path;

    std::optional<QString> lastLoggedInUser() const override { return account; }
    std::optional<QString> consoleUser() const override { return u"login"_s; }
    bool isTQL() const override { return engine; }
    std::optional<QString> schedulerSettingsFile() const override { return path; }
    QDateTime now() const override { return QDateTime(QDate(2026, 11, 22), QTime(12, 0), Qt::UTC); }
};

class SchedulerTest : public testing::Test
{
protected:
    SchedulerTest()
    {
        m_world.path = m_home.filePath(u"schedules"_s);
        m_scheduler.mainController = &m_world;
    }

    /// A record of the world's user, `minutes` after its noon.
    PropertyListUid record(int minutes, QVariantMap fields)
    {
        constexpr double Noon = 817041600; // 2026-11-22 12:00 UTC, from 2001-01-01
        fields.insert(u"scheduleTime"_s, QVariant::fromValue(m_maker.date(Noon + 60.0 * minutes)));
        fields.insert(u"corvaneUserName"_s, u"ann"_s);
        fields.insert(u"username"_s, u"eng: login"_s);
        fields.insert(u"profileName"_s, u"login"_s);
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

const QString Frequency = u"frequency"_s;
const QString Status = u"status"_s;
} // namespace

TEST_F(SchedulerTest, AnswersFollowTheFile)
{
    EXPECT_FALSE(m_scheduler.nextScheduledItem());
    EXPECT_TRUE(m_scheduler.corvaneSchedulerDetailsForAllUsers()->empty());

    store({record(90, {{Frequency, 2}}), record(30, {{Frequency, 3}}), record(5, {{Frequency, 0}})});
    EXPECT_EQ(m_scheduler.nextScheduledItem()->scheduleTime, m_world.now().addSecs(30 * 60));
    EXPECT_EQ(m_scheduler.getImmediateScheduledItem()->scheduleTime, m_world.now().addSecs(5 * 60));
    EXPECT_EQ(m_scheduler.corvaneSchedulerDetails(u"eng: login"_s).size(), 3U);
    EXPECT_TRUE(m_scheduler.corvaneSchedulerDetails(u"eng: log"_s).empty()) << "the whole text counts";
    EXPECT_TRUE(m_scheduler.checkforAnyScheduledJob(u"ann"_s));
    EXPECT_FALSE(m_scheduler.checkforAnyScheduledJob(u"bob"_s));

    m_world.account.reset();
    EXPECT_FALSE(m_scheduler.nextScheduledItem());
    m_world.account = u"ann"_s;

    store({record(10, {{Frequency, 2}})});
    EXPECT_EQ(m_scheduler.nextScheduledItem()->scheduleTime, m_world.now().addSecs(10 * 60));
    EXPECT_FALSE(m_scheduler.getImmediateScheduledItem());

    ASSERT_TRUE(AtomicFile::write(*m_world.path, "damaged"));
    EXPECT_FALSE(m_scheduler.nextScheduledItem());
    m_scheduler.mainController = nullptr;
    EXPECT_FALSE(m_scheduler.nextScheduledItem());
    EXPECT_FALSE(m_scheduler.checkforAnyScheduledJob(u"ann"_s));
}

TEST_F(SchedulerTest, RunningJobTellsWhoseAndWhich)
{
    const auto running = [this](int type) { return record(0, {{Status, 1}, {u"scheduleType"_s, type}}); };
    EXPECT_EQ(m_scheduler.currentscheduleuser, std::nullopt);
    store({m_maker.add(u"no item"_s), record(0, {}), running(1)});
    EXPECT_TRUE(m_scheduler.isScheduleBackupInProgress());
    EXPECT_EQ(m_scheduler.currentscheduleuser, u"ann"_s);
    EXPECT_EQ(m_scheduler.currentScheduleType, QNXScheduleType::restore);

    m_world.engine = true;
    store({running(0)});
    EXPECT_TRUE(m_scheduler.isScheduleBackupInProgress());
    EXPECT_EQ(m_scheduler.currentscheduleuser, u"eng"_s);
    EXPECT_EQ(m_scheduler.currentScheduleType, QNXScheduleType::backup);

    store({record(0, {})}); // the job has ended, others remain
    EXPECT_FALSE(m_scheduler.isScheduleBackupInProgress());
    EXPECT_EQ(m_scheduler.currentscheduleuser, u"eng"_s);

    store({});
    EXPECT_FALSE(m_scheduler.isScheduleBackupInProgress());
    EXPECT_EQ(m_scheduler.currentscheduleuser, QString(u""_s));
}

#include "Companions/BackupDaemon/DaemonFiles.h"

#include "Companions/Common/PropertyList.h"
#include "Companions/MainApplication/AccountFiles.h"
#include "Companions/MainApplication/ScheduleBook.h"
#include "Tests/Companions/TemporaryHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
const QString Ana = u"ana@example.com"_s;
} // namespace

TEST(DaemonFiles, OnlyTheNextRepeatingScheduleOfThisLoginIsMarkedMovedOnAndPutRight)
{
    const TemporaryHome home;
    const QString path = home.table.path(u"SchedulerSettingsFile"_s);
    const QDateTime now(QDate(2026, 11, 20), QTime(12, 0));
    const auto job = [&](const QString &login, int seconds, Frequency frequency) {
        return ScheduleBook::makeJob(Ana, login, now.addSecs(seconds), frequency);
    };
    const auto statuses = [&path] {
        std::vector<int> found;
        for (const ScheduleRecord &record : readSchedules(path))
            found.push_back(record.value(u"status"_s).toInt());
        return found;
    };
    DaemonFiles files{home.table};
    ASSERT_TRUE(AccountFiles(home.table).signIn({.name = Ana}));
    ASSERT_TRUE(
        writeSchedules(path, {job(u"guest"_s, -900, Frequency::Daily), job(loginName(), -600, Frequency::Daily),
                              job(loginName(), -700, Frequency::Once)}));
    EXPECT_FALSE(files.setScheduleStatus(u"nobody"_s, JobStatus::InProgress, now));
    ASSERT_TRUE(files.setScheduleStatus(Ana, JobStatus::InProgress, now));
    EXPECT_EQ(statuses(), (std::vector<int>{0, 1, 0}));
    files.clearStaleState(now);
    EXPECT_EQ(statuses(), (std::vector<int>{0, 2, 0})) << "of a daemon that died in the middle of it";
    EXPECT_EQ(readSchedules(path).at(1).value(u"scheduleTime"_s).toDateTime(), now.addSecs(86'400 - 600));

    files.setSchedulerState(SchedulerState::Disabled);
    files.clearStaleState(now);
    EXPECT_TRUE(files.schedulesDisabled()) << "the user's switch is not the daemon's";
}

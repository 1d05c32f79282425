#include "Classes/Schedules/ScheduleRules.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
const QDateTime Now(QDate(2026, 11, 22), QTime(12, 0, 0, 500), Qt::UTC);

CorvaneScheduleItem job(const char *name, qint64 secondsAhead, QNXFrequency frequency = QNXFrequency::daily)
{
    CorvaneScheduleItem item;
    item.destination = QString::fromLatin1(name); // what the rows below tell the jobs apart by
    item.profileName = u"login"_s;
    item.corvaneUsername = u"ann"_s;
    item.frequency = frequency;
    item.scheduleTime = Now.addSecs(secondsAhead);
    return item;
}

template<class Change>
CorvaneScheduleItem changed(CorvaneScheduleItem item, Change change)
{
    change(item);
    return item;
}

const ScheduleOwner Owner{u"login"_s, u"ann"_s};
} // namespace

TEST(ScheduleRulesTest, NextJobIsTheLeastInSignedMinutes)
{
    const auto otherLogin = changed(job("other login", 60), [](auto &j) { j.profileName = u"bob"_s; });
    const auto noLogin = changed(job("no login", 60), [](auto &j) { j.profileName.reset(); });
    const auto otherAccount = changed(job("other account", 60), [](auto &j) { j.corvaneUsername.reset(); });
    const auto undated = changed(job("undated", 60), [](auto &j) { j.scheduleTime.reset(); });
    const auto unsetFrequency = changed(job("unset", 60), [](auto &j) { j.frequency.reset(); });
    const auto late = job("late", 5400);
    const auto once = [](qint64 seconds) { return job("once", seconds, QNXFrequency::once); };
    const std::tuple<const char *, ScheduleRecords, const char *> rows[] = {
        {"none", {}, nullptr},
        {"the sooner, first in the file", {job("soon", 1800), late}, "soon"},
        {"the sooner, last in the file", {late, job("soon", 1800)}, "soon"},
        {"past before future", {job("ahead", 600), job("past", -600)}, "past"},
        {"longest past first", {job("past", -600), job("long past", -6000)}, "long past"},
        {"same minute, file order", {job("45 s", 45), job("20 s", 20)}, "45 s"},
        {"59 seconds to either side are one minute", {job("ahead", 59), job("past", -59)}, "ahead"},
        {"60 seconds past are not", {job("ahead", 59), job("past", -60)}, "past"},
        {"only jobs to be started at once", {once(60), once(600)}, nullptr},
        {"job to be started at once wins a tie", {once(30), job("daily", 10)}, "once"},
        {"but not by being sooner", {once(-6000), job("daily", 600)}, "daily"},
        {"other owners and undated jobs", {otherLogin, noLogin, otherAccount, undated, late}, "late"},
        {"unset frequency counts as dated", {late, unsetFrequency}, "unset"},
        {"entry that is no item", {late, std::nullopt}, nullptr},
    };
    for (const auto &[name, records, wanted] : rows) {
        const auto *next = nextScheduledItem(records, Now, Owner);
        EXPECT_EQ(next ? next->destination : std::nullopt,
                  wanted ? std::optional(QString::fromLatin1(wanted)) : std::nullopt)
            << name;
    }
    const ScheduleRecords records{late, noLogin};
    const auto *ofNobody = nextScheduledItem(records, Now, {std::nullopt, u"ann"_s});
    ASSERT_TRUE(ofNobody);
    EXPECT_EQ(ofNobody->destination, u"no login");
}

TEST(ScheduleRulesTest, ImmediateJobIsTheFirstOfWhateverUser)
{
    const auto others = changed(job("bob's", 0, QNXFrequency::once), [](auto &j) { j.profileName = u"bob"_s; });
    const ScheduleRecords records{job("daily", 0), others, job("ann's", 0, QNXFrequency::once)};
    const auto *found = immediateScheduledItem(records);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->destination, u"bob's");
    EXPECT_FALSE(immediateScheduledItem(
        {job("daily", 0), changed(job("unset", 0), [](auto &j) { j.frequency.reset(); })}));
    EXPECT_FALSE(immediateScheduledItem({others, std::nullopt}));
}

TEST(ScheduleRulesTest, RunningJobIsFoundPastOtherEntries)
{
    const auto running = changed(job("running", 0), [](auto &j) { j.status = QNXStatus::inProgress; });
    const ScheduleRecords records{std::nullopt, job("idle", 0), running, job("idle", 0)};
    const auto *found = runningScheduledItem(records);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->destination, u"running");
    EXPECT_FALSE(runningScheduledItem({std::nullopt, job("idle", 0)}));
}

TEST(ScheduleRulesTest, AccountOfAJob)
{
    const std::tuple<const char *, std::optional<QString>, std::optional<QString>, const char *, const char *>
        rows[] = {
            {"both", u"eng: login"_s, u"ann"_s, "eng", "ann"},
            {"two separators", u"eng: a: b"_s, std::nullopt, "eng", ""},
            {"no blank", u"eng:login"_s, u"ann"_s, "eng:login", "ann"},
            {"nothing before it", u": login"_s, u"ann"_s, "", "ann"},
            {"unset", std::nullopt, std::nullopt, "", ""},
        };
    for (const auto &[name, username, corvaneUsername, engine, other] : rows) {
        SCOPED_TRACE(name);
        CorvaneScheduleItem item;
        item.username = username;
        item.corvaneUsername = corvaneUsername;
        EXPECT_EQ(scheduleAccount(item, true).toStdString(), engine);
        EXPECT_EQ(scheduleAccount(item, false).toStdString(), other);
    }
}

TEST(ScheduleRulesTest, JobsOfAUserByTheWholeText)
{
    const auto owned = [](const char *name, const char *username) {
        return changed(job(name, 0), [&](auto &j) { j.username = QString::fromLatin1(username); });
    };
    const ScheduleRecords records{owned("1", "ann: login"), std::nullopt, job("unset", 0),
                                  owned("2", "ann: log"), owned("3", "ann: login")};
    const auto items = schedulesOfUser(records, u"ann: login"_s);
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].destination, u"1");
    EXPECT_EQ(items[1].destination, u"3");
    EXPECT_TRUE(schedulesOfUser(records, QString()).empty());
}

TEST(ScheduleRulesTest, OnlineBackupOfAnOwner)
{
    const auto typed = [](std::optional<QNXBackupType> type) {
        return changed(job("x", 0), [&](auto &j) { j.backupType = type; });
    };
    const auto online = typed(QNXBackupType::onlineBackup);
    const std::tuple<const char *, ScheduleRecords, bool> rows[] = {
        {"none", {}, false},
        {"after others", {typed(QNXBackupType::localBackup), typed({}), online}, true},
        {"of another login", {changed(online, [](auto &j) { j.profileName.reset(); })}, false},
        {"of another account", {changed(online, [](auto &j) { j.corvaneUsername = u"bob"_s; })}, false},
        {"before an entry that is no item", {online, std::nullopt}, true},
        {"after an entry that is no item", {std::nullopt, online}, false},
    };
    for (const auto &[name, records, found] : rows)
        EXPECT_EQ(hasOnlineBackup(records, Owner), found) << name;
}

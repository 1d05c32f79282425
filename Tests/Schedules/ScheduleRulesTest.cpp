#include "Classes/Schedules/ScheduleRules.h"

#include "Tests/Support/ForEachRow.h"
#include "Tests/Support/PrintQt.h"

using namespace Qt::StringLiterals;

namespace
{
const QDateTime Now(QDate(2026, 11, 22), QTime(12, 0, 0, 500), Qt::UTC);

CorvaneScheduleItem job(const char *name, qint64 secondsAhead, QNXFrequency frequency = QNXFrequency::daily)
{
    CorvaneScheduleItem item;
    item.destination = QString::fromLatin1(name);
    item.profileName = u"login"_s;
    item.corvaneUsername = u"ann"_s;
    item.frequency = frequency;
    item.scheduleTime = Now.addSecs(secondsAhead);
    return item;
}

template<class Field, class Value>
CorvaneScheduleItem with(CorvaneScheduleItem item, Field field, Value value)
{
    item.*field = value;
    return item;
}

/// What tells the job apart; "-" for none.
template<class Job>
QString nameOf(const Job &found)
{
    return found ? found->destination.value_or(u"?"_s) : u"-"_s;
}

using Item = CorvaneScheduleItem;
const ScheduleOwner Owner{u"login"_s, u"ann"_s};
} // namespace

TEST(ScheduleRulesTest, NextJobIsTheLeastInSignedMinutes)
{
    const auto otherLogin = with(job("other login", 60), &Item::profileName, u"bob"_s);
    const auto noLogin = with(job("no login", 60), &Item::profileName, std::nullopt);
    const auto otherAccount = with(job("other account", 60), &Item::corvaneUsername, std::nullopt);
    const auto undated = with(job("undated", 60), &Item::scheduleTime, std::nullopt);
    const auto unsetFrequency = with(job("unset", 60), &Item::frequency, std::nullopt);
    const auto late = job("late", 5400);
    const auto once = [](qint64 seconds) { return job("once", seconds, QNXFrequency::once); };
    const Row<ScheduleRecords, const char *> rows[] = {
        {"none", {}, "-"},
        {"the sooner, first in the file", {job("soon", 1800), late}, "soon"},
        {"the sooner, last in the file", {late, job("soon", 1800)}, "soon"},
        {"past before future", {job("ahead", 600), job("past", -600)}, "past"},
        {"longest past first", {job("past", -600), job("long past", -6000)}, "long past"},
        {"same minute, file order", {job("45 s", 45), job("20 s", 20)}, "45 s"},
        {"59 seconds to either side are one minute", {job("ahead", 59), job("past", -59)}, "ahead"},
        {"60 seconds past are not", {job("ahead", 59), job("past", -60)}, "past"},
        {"only jobs to be started at once", {once(60), once(600)}, "-"},
        {"job to be started at once wins a tie", {once(30), job("daily", 10)}, "once"},
        {"but not by being sooner", {once(-6000), job("daily", 600)}, "daily"},
        {"other owners and undated jobs", {otherLogin, noLogin, otherAccount, undated, late}, "late"},
        {"unset frequency counts as dated", {late, unsetFrequency}, "unset"},
        {"entry that is no item", {late, std::nullopt}, "-"},
    };
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(nameOf(nextScheduledItem(row.given, Now, Owner)).toStdString(), row.expected);
    });
    EXPECT_EQ(nameOf(nextScheduledItem({late, noLogin}, Now, {std::nullopt, u"ann"_s})), u"no login"_s);
}

TEST(ScheduleRulesTest, ImmediateAndRunningJobAreTheFirstOfWhateverUser)
{
    const auto others = with(job("bob's", 0, QNXFrequency::once), &Item::profileName, u"bob"_s);
    const auto daily = job("daily", 0);
    const auto running = with(daily, &Item::status, QNXStatus::inProgress);
    const struct {
        const char *name;
        ScheduleRecords records;
        const char *immediate, *running;
    } rows[] = {
        {"immediate ones", {daily, others, job("ann's", 0, QNXFrequency::once)}, "bob's", "-"},
        {"unset frequency", {daily, with(daily, &Item::frequency, std::nullopt)}, "-", "-"},
        {"immediate beside no item", {others, std::nullopt}, "-", "-"},
        {"running past other entries", {std::nullopt, others, running}, "-", "daily"},
    };
    forEachRow(rows, [](const auto &row) {
        EXPECT_EQ(nameOf(immediateScheduledItem(row.records)).toStdString(), row.immediate);
        EXPECT_EQ(nameOf(runningScheduledItem(row.records)).toStdString(), row.running);
    });
}

TEST(ScheduleRulesTest, AccountOfAJob)
{
    const struct {
        const char *name;
        std::optional<QString> username, corvaneUsername;
        const char *engine, *other;
    } rows[] = {
        {"both", u"eng: login"_s, u"ann"_s, "eng", "ann"},
        {"two separators", u"eng: a: b"_s, std::nullopt, "eng", ""},
        {"no blank", u"eng:login"_s, u"ann"_s, "eng:login", "ann"},
        {"nothing before it", u": login"_s, u"ann"_s, "", "ann"},
        {"unset", std::nullopt, std::nullopt, "", ""},
    };
    forEachRow(rows, [](const auto &row) {
        const auto item =
            with(with({}, &Item::username, row.username), &Item::corvaneUsername, row.corvaneUsername);
        EXPECT_EQ(scheduleAccount(item, true).toStdString(), row.engine);
        EXPECT_EQ(scheduleAccount(item, false).toStdString(), row.other);
    });
}

TEST(ScheduleRulesTest, OnlineBackupOfAnOwner)
{
    const auto online = with(job("x", 0), &Item::backupType, QNXBackupType::onlineBackup);
    const auto local = with(online, &Item::backupType, QNXBackupType::localBackup);
    const auto unset = with(online, &Item::backupType, std::nullopt);
    const Row<ScheduleRecords, bool> rows[] = {
        {"none", {}, false},
        {"after others", {local, unset, online}, true},
        {"of another login", {with(online, &Item::profileName, std::nullopt)}, false},
        {"of another account", {with(online, &Item::corvaneUsername, u"bob"_s)}, false},
        {"before an entry that is no item", {online, std::nullopt}, true},
        {"after an entry that is no item", {std::nullopt, online}, false},
    };
    forEachRow(rows, [](const auto &row) { EXPECT_EQ(hasOnlineBackup(row.given, Owner), row.expected); });
}

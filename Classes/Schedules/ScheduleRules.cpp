#include "Classes/Schedules/ScheduleRules.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
bool isDatedJobOf(const CorvaneScheduleItem &item, const ScheduleOwner &owner)
{
    return item.profileName == owner.consoleUser && item.corvaneUsername == owner.account && item.scheduleTime;
}

/// Whole minutes from `now`, cut off towards zero: 59 seconds to either side are 0.
qint64 minutesUntil(const QDateTime &moment, const QDateTime &now)
{
    return (moment.toMSecsSinceEpoch() - now.toMSecsSinceEpoch()) / 60000;
}

template<class Predicate>
const CorvaneScheduleItem *firstItem(const ScheduleRecords &records, Predicate matches)
{
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&](const auto &record) { return record && matches(*record); });
    return found == records.end() ? nullptr : &**found;
}
} // namespace

bool holdsItemsOnly(const ScheduleRecords &records)
{
    return std::all_of(records.begin(), records.end(), [](const auto &record) { return record.has_value(); });
}

const CorvaneScheduleItem *nextScheduledItem(const ScheduleRecords &records, const QDateTime &now,
                                             const ScheduleOwner &owner)
{
    if (!holdsItemsOnly(records))
        return nullptr;
    std::optional<qint64> least;
    for (const auto &record : records) {
        if (record->frequency == QNXFrequency::once || !isDatedJobOf(*record, owner))
            continue;
        const qint64 minutes = minutesUntil(*record->scheduleTime, now);
        least = least ? std::min(*least, minutes) : minutes;
    }
    if (!least)
        return nullptr;
    return firstItem(records, [&](const CorvaneScheduleItem &item) {
        return isDatedJobOf(item, owner) && minutesUntil(*item.scheduleTime, now) == *least;
    });
}

const CorvaneScheduleItem *immediateScheduledItem(const ScheduleRecords &records)
{
    if (!holdsItemsOnly(records))
        return nullptr;
    return firstItem(records,
                     [](const CorvaneScheduleItem &item) { return item.frequency == QNXFrequency::once; });
}

const CorvaneScheduleItem *runningScheduledItem(const ScheduleRecords &records)
{
    return firstItem(records,
                     [](const CorvaneScheduleItem &item) { return item.status == QNXStatus::inProgress; });
}

QString scheduleAccount(const CorvaneScheduleItem &item, bool isTQL)
{
    if (!isTQL)
        return item.corvaneUsername.value_or(QString());
    const auto owner = item.username.value_or(QString());
    return owner.left(owner.indexOf(": "_L1)); // not found is -1, and then the whole text is taken
}

std::vector<CorvaneScheduleItem> schedulesOfUser(const ScheduleRecords &records, const QString &user)
{
    std::vector<CorvaneScheduleItem> items;
    for (const auto &record : records) {
        if (record && record->username == user)
            items.push_back(*record);
    }
    return items;
}

bool hasOnlineBackup(const ScheduleRecords &records, const ScheduleOwner &owner)
{
    for (const auto &record : records) {
        if (!record)
            return false;
        if (record->profileName == owner.consoleUser && record->corvaneUsername == owner.account &&
            record->backupType == QNXBackupType::onlineBackup)
            return true;
    }
    return false;
}

#include "Classes/Schedules/CorvaneScheduleItem.h"

#include "Classes/Schedules/ScheduleTimeText.h"
#include "Platform/KeyedArchive.h"

using namespace Qt::StringLiterals;

namespace
{
/// The enumeration value of a stored number; none past `last`. Unsigned, so that a negative number is past it
/// as well.
template<class Enumeration>
std::optional<Enumeration> enumerated(const ArchiveObject &coder, QLatin1StringView key, Enumeration last)
{
    const auto raw = quint64(coder.decodeInt(key));
    return raw <= quint64(last) ? std::optional(Enumeration(raw)) : std::nullopt;
}

std::optional<QDateTime> wholeSeconds(std::optional<QDateTime> moment)
{
    if (!moment)
        return std::nullopt;
    const qint64 milliseconds = moment->toMSecsSinceEpoch();
    const qint64 fraction = (milliseconds % 1000 + 1000) % 1000;
    return fraction == 0 ? moment : moment->addMSecs(-fraction);
}
} // namespace

CorvaneScheduleItem CorvaneScheduleItem::decoded(const ArchiveObject &coder)
{
    const auto string = [&coder](const char *key) { return coder.decodeString(QLatin1StringView(key)); };
    const auto boolean = [&coder](const char *key) { return coder.decodeBool(QLatin1StringView(key)); };
    const auto choice = [&coder](const char *key, auto last) {
        return enumerated(coder, QLatin1StringView(key), last);
    };

    CorvaneScheduleItem item;
    item.username = string("username");
    item.corvaneUsername = string("corvaneUserName");
    item.scheduleTime = wholeSeconds(coder.decodeDate("scheduleTime"_L1));
    item.backupType = choice("backupType", QNXBackupType::notBackup);
    item.status = choice("status", QNXStatus::completed);
    item.scheduleType = choice("scheduleType", QNXScheduleType::restore);
    item.frequency = choice("frequency", QNXFrequency::none);
    item.modify = choice("modify", QNXModify::kModified);
    item.userAtServer = string("userAtServer");
    item.serverName = string("serverName");
    item.password = string("password");
    item.processReferenceFile = string("processReferenceFile");
    item.emailids = string("emailids");
    item.quotaServerName = string("quotaServerName");
    item.profileName = string("profileName");
    item.destination = string("destination");
    item.displayDesktopNotification = boolean("displayDesktopNotification");
    item.shouldStartMissedScheduleBackup = boolean("shouldStartMissedScheduleBackup");
    item.sendEmailNotification = boolean("sendEmailNotification");
    item.isUseSSL = boolean("isUseSSL");
    item.scheduleTimeSettings = choice("timeSettings", QNXTimeSettings::startImmediate);
    item.selectedDaysArray = coder.decodeList("selectedDaysForSchedule"_L1);
    item.sendLogExtract = boolean("sendLogExtract");
    item.notifyOnFailure = boolean("notifyOnFailure");
    item.isAutoSyncEnabled = boolean("isAutoSyncEnabled");
    item.notifyMe = coder.decodeInt("notifyMe"_L1);
    return item;
}

std::optional<QString> CorvaneScheduleItem::scheduleTimeString(const QLocale &locale) const
{
    return scheduleTime ? std::optional(scheduleTimeText(*scheduleTime, locale)) : std::nullopt;
}

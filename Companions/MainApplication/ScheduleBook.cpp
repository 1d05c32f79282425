#include "Companions/MainApplication/ScheduleBook.h"

#include <array>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::array<const char *, 7> FrequencyWords = {"once",    "hourly",   "daily", "weekly",
                                                        "monthly", "weekdays", "none"};

QDateTime nextTimeOfDay(const QDateTime &now, QTime time)
{
    const QDateTime today(now.date(), time);
    return today > now ? today : today.addDays(1);
}
} // namespace

ScheduleBook::ScheduleBook(QString path) : m_path(std::move(path))
{
}

ScheduleRecord ScheduleBook::makeJob(const QString &account, const QString &login, const QDateTime &time,
                                     Frequency frequency)
{
    const bool immediate = frequency == Frequency::Once;
    return {{u"username"_s, QString(account + u": "_s + login)},
            {u"corvaneUserName"_s, account},
            {u"profileName"_s, login},
            {u"scheduleTime"_s, time},
            {u"backupType"_s, 0},
            {u"status"_s, static_cast<int>(JobStatus::YetToStart)},
            {u"scheduleType"_s, 0},
            {u"frequency"_s, static_cast<int>(frequency)},
            {u"modify"_s, 0},
            {u"timeSettings"_s, immediate ? 2 : 1},
            {u"userAtServer"_s, QString(account + u"@vault7.halvernet.example"_s)},
            {u"serverName"_s, u"vault7.halvernet.example"_s},
            {u"quotaServerName"_s, u"vault7.halvernet.example"_s},
            {u"destination"_s, u"Online"_s},
            {u"emailids"_s, account},
            {u"displayDesktopNotification"_s, true},
            {u"shouldStartMissedScheduleBackup"_s, true},
            {u"sendEmailNotification"_s, false},
            {u"isUseSSL"_s, true},
            {u"sendLogExtract"_s, false},
            {u"notifyOnFailure"_s, true},
            {u"isAutoSyncEnabled"_s, false},
            {u"notifyMe"_s, 1},
            {u"selectedDaysForSchedule"_s, QVariantList{u"Mon"_s, u"Wed"_s, u"Fri"_s}}};
}

bool ScheduleBook::add(const ScheduleRecord &job)
{
    auto jobs = readSchedules(m_path);
    jobs.push_back(job);
    return writeSchedules(m_path, jobs);
}

bool ScheduleBook::clear()
{
    return writeSchedules(m_path, {});
}

bool ScheduleBook::fillWithDemoSet(const QString &account, const QString &login, const QDateTime &now)
{
    const QString other = u"kenji@example.net"_s;
    const QString otherLogin = u"guest"_s;
    ScheduleRecord restore =
        makeJob(account, login, nextTimeOfDay(now, QTime(4, 0)).addDays(9), Frequency::None);
    restore.insert(u"scheduleType"_s, 1);
    ScheduleRecord local =
        makeJob(account, login, nextTimeOfDay(now, QTime(22, 15)).addDays(3), Frequency::Weekly);
    local.insert(u"backupType"_s, 1);
    return writeSchedules(
        m_path, {makeJob(other, login, now.addSecs(-3600), Frequency::Hourly),
                 makeJob(account, otherLogin, now.addSecs(600), Frequency::Daily),
                 makeJob(other, otherLogin, nextTimeOfDay(now, QTime(12, 0)), Frequency::Weekdays), local,
                 makeJob(account, login, nextTimeOfDay(now, QTime(2, 30)), Frequency::Daily), restore,
                 makeJob(account, login, nextTimeOfDay(now, QTime(3, 0)).addMonths(1), Frequency::Monthly)});
}

QStringList ScheduleBook::describe() const
{
    QStringList lines;
    for (const ScheduleRecord &job : readSchedules(m_path)) {
        const auto frequency = job.value(u"frequency"_s).toUInt();
        const auto word =
            QString::fromLatin1(frequency < FrequencyWords.size() ? FrequencyWords[frequency] : "?");
        lines.append(u"%1  %2  %3  status %4"_s
                         .arg(job.value(u"scheduleTime"_s).toDateTime().toString(u"yyyy-MM-dd HH:mm"),
                              word.leftJustified(8), job.value(u"username"_s).toString())
                         .arg(job.value(u"status"_s).toInt()));
    }
    return lines;
}

std::optional<Frequency> frequencyFromWord(const QString &word)
{
    for (std::size_t value = 0; value < FrequencyWords.size(); ++value)
        if (word == QLatin1StringView(FrequencyWords[value]))
            return static_cast<Frequency>(value);
    return std::nullopt;
}

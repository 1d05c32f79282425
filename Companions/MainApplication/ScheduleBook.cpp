#include "Companions/MainApplication/ScheduleBook.h"

#include <array>

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
    return {{QStringLiteral("username"), QString(account + QStringLiteral(": ") + login)},
            {QStringLiteral("corvaneUserName"), account},
            {QStringLiteral("profileName"), login},
            {QStringLiteral("scheduleTime"), time},
            {QStringLiteral("backupType"), 0},
            {QStringLiteral("status"), static_cast<int>(JobStatus::YetToStart)},
            {QStringLiteral("scheduleType"), 0},
            {QStringLiteral("frequency"), static_cast<int>(frequency)},
            {QStringLiteral("modify"), 0},
            {QStringLiteral("timeSettings"), immediate ? 2 : 1},
            {QStringLiteral("userAtServer"), QString(account + QStringLiteral("@vault7.halvernet.example"))},
            {QStringLiteral("serverName"), QStringLiteral("vault7.halvernet.example")},
            {QStringLiteral("quotaServerName"), QStringLiteral("vault7.halvernet.example")},
            {QStringLiteral("destination"), QStringLiteral("Online")},
            {QStringLiteral("emailids"), account},
            {QStringLiteral("displayDesktopNotification"), true},
            {QStringLiteral("shouldStartMissedScheduleBackup"), true},
            {QStringLiteral("sendEmailNotification"), false},
            {QStringLiteral("isUseSSL"), true},
            {QStringLiteral("sendLogExtract"), false},
            {QStringLiteral("notifyOnFailure"), true},
            {QStringLiteral("isAutoSyncEnabled"), false},
            {QStringLiteral("notifyMe"), 1},
            {QStringLiteral("selectedDaysForSchedule"),
             QVariantList{QStringLiteral("Mon"), QStringLiteral("Wed"), QStringLiteral("Fri")}}};
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
    const QString other = QStringLiteral("kenji@example.net");
    const QString otherLogin = QStringLiteral("guest");
    ScheduleRecord restore =
        makeJob(account, login, nextTimeOfDay(now, QTime(4, 0)).addDays(9), Frequency::None);
    restore.insert(QStringLiteral("scheduleType"), 1);
    ScheduleRecord local =
        makeJob(account, login, nextTimeOfDay(now, QTime(22, 15)).addDays(3), Frequency::Weekly);
    local.insert(QStringLiteral("backupType"), 1);
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
        const auto frequency = job.value(QStringLiteral("frequency")).toUInt();
        const auto word =
            QString::fromLatin1(frequency < FrequencyWords.size() ? FrequencyWords[frequency] : "?");
        lines.append(
            QStringLiteral("%1  %2  %3  status %4")
                .arg(job.value(QStringLiteral("scheduleTime")).toDateTime().toString(u"yyyy-MM-dd HH:mm"),
                     word.leftJustified(8), job.value(QStringLiteral("username")).toString())
                .arg(job.value(QStringLiteral("status")).toInt()));
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

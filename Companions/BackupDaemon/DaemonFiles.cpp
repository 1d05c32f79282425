#include "Companions/BackupDaemon/DaemonFiles.h"

#include "Companions/BackupDaemon/Throttle.h"
#include "Companions/Common/Notifications.h"
#include "Companions/Common/PropertyList.h"

#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
const QString StatusKey = u"status"_s;
const QString TimeKey = u"scheduleTime"_s;
const QString AccountKey = u"corvaneUserName"_s;

bool hasStatus(const ScheduleRecord &record, JobStatus status)
{
    return record.value(StatusKey).toInt() == static_cast<int>(status);
}

Frequency frequencyOf(const ScheduleRecord &record)
{
    return static_cast<Frequency>(record.value(u"frequency"_s).toInt());
}
} // namespace

DaemonFiles::DaemonFiles(PathTable table) : m_table(std::move(table))
{
}

bool DaemonFiles::publishPort(quint16 port)
{
    return writePropertyList(m_table.path(u"TCPPortFile"_s), {{u"port"_s, int(port)}});
}

QString DaemonFiles::signedInAccount() const
{
    const QVariant record = readPropertyList(m_table.path(u"LastUserLoginDetailsFilePath"_s));
    return record.toMap().value(u"Username"_s).toString();
}

bool DaemonFiles::setCurrentJob(const std::optional<RunningJob> &job)
{
    QVariantMap jobs;
    QVariantMap status{{u"Interactive"_s, QString()}, {u"Schedule"_s, QString()}};
    if (job) {
        const QVariantMap entry{{u"operationStartType"_s, job->operationStartType},
                                {u"operationType"_s, job->operationType}};
        jobs.insert(job->account, QVariantList{entry});
        const bool byHand = job->operationStartType == 0;
        status.insert(byHand ? u"Interactive"_s : u"Schedule"_s, job->account);
    }
    const bool listed = writePropertyList(m_table.path(u"CurrentJobs"_s), jobs);
    return writePropertyList(m_table.path(u"ApplicationStatusPath"_s), status) && listed;
}

bool DaemonFiles::setSchedulerState(SchedulerState state)
{
    return writeWholeFile(m_table.path(u"SchedulerStatusInfoPath"_s),
                          QByteArray::number(static_cast<int>(state)));
}

bool DaemonFiles::schedulesDisabled() const
{
    return readTextFile(m_table.path(u"SchedulerStatusInfoPath"_s)) == "0"_L1;
}

bool DaemonFiles::setPauseMarker(const QString &account, bool paused)
{
    const QString folder = QFileInfo(throttlePath(account)).path();
    return writeWholeFile(folder + u"/pause.txt"_s, paused ? "1" : "0");
}

int DaemonFiles::bandwidth(const QString &account) const
{
    const QVariant preferences = readPropertyList(m_table.path(u"DeamonPreferencePath"_s));
    return allowedBandwidth(preferences.toMap().value(account).toMap());
}

std::optional<ScheduleRecord> DaemonFiles::scheduleFor(const QString &account,
                                                       std::optional<JobKind> kind) const
{
    const Records records = readSchedules(m_table.path(u"SchedulerSettingsFile"_s));
    const auto found = findSchedule(records, account, kind);
    if (found == records.cend())
        return std::nullopt;
    return *found;
}

bool DaemonFiles::setScheduleStatus(const QString &account, JobStatus status, const QDateTime &now,
                                    std::optional<JobKind> kind)
{
    const QString path = m_table.path(u"SchedulerSettingsFile"_s);
    Records records = readSchedules(path);
    const auto running =
        std::find_if(records.cbegin(), records.cend(), [&account](const ScheduleRecord &record) {
            return record.value(AccountKey) == account && hasStatus(record, JobStatus::InProgress);
        });
    const auto found = running != records.cend() ? running : findSchedule(records, account, kind);
    if (found == records.cend())
        return false;
    const auto place = records.begin() + (found - records.cbegin());
    const bool ended = status == JobStatus::Completed || status == JobStatus::Cancelled;
    if (ended && frequencyOf(*place) == Frequency::Once) {
        records.erase(place);
        return writeSchedules(path, records);
    }
    place->insert(StatusKey, static_cast<int>(status));
    if (ended)
        place->insert(TimeKey, nextOccurrence(place->value(TimeKey).toDateTime(), frequencyOf(*place), now));
    return writeSchedules(path, records);
}

void DaemonFiles::clearStaleState(const QDateTime &now)
{
    const QString path = m_table.path(u"SchedulerSettingsFile"_s);
    for (const ScheduleRecord &record : readSchedules(path)) {
        if (!hasStatus(record, JobStatus::InProgress))
            continue;
        const QString account = record.value(AccountKey).toString();
        setScheduleStatus(account, JobStatus::Cancelled, now);
        setPauseMarker(account, false);
    }
    setCurrentJob(std::nullopt);
    if (!schedulesDisabled())
        setSchedulerState(SchedulerState::Normal);
}

bool DaemonFiles::announceScheduleChange() const
{
    return postNotification(m_table.value(u"UpdateImmediateScheduleToolTip"_s));
}

DaemonFiles::Records::const_iterator DaemonFiles::findSchedule(const Records &records, const QString &account,
                                                               std::optional<JobKind> kind)
{
    const QString login = loginName();
    auto best = records.cend();
    for (auto record = records.cbegin(); record != records.cend(); ++record) {
        if (record->value(AccountKey) != account || record->value(u"profileName"_s) != login)
            continue;
        if (kind && kindOf(*record) != *kind)
            continue;
        const bool repeats = frequencyOf(*record) != Frequency::Once;
        const bool betterKind = best == records.cend() || (repeats && frequencyOf(*best) == Frequency::Once);
        const bool sameKind = best != records.cend() && repeats == (frequencyOf(*best) != Frequency::Once);
        if (betterKind || (sameKind && record->value(TimeKey).toDateTime() < best->value(TimeKey).toDateTime()))
            best = record;
    }
    return best;
}

QString DaemonFiles::throttlePath(const QString &account) const
{
    return m_table.path(u"BandwidthThrottleFilePathForTql"_s, {account});
}

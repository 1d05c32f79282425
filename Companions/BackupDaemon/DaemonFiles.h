#pragma once

#include "Companions/Common/PathTable.h"
#include "Companions/Common/ScheduleArchive.h"

#include <QString>

#include <optional>

/// The switch of the scheduler as the shared file holds it.
enum class SchedulerState { Disabled = 0, Normal = 1, Paused = 2 };

/// What a running job is, as other programs read it in the list of current jobs.
struct RunningJob {
    QString account;
    int operationStartType = 1; ///< 0 started by hand in the main application, 1 by the schedule
    int operationType = 0;      ///< 0 backup, 2 restore
};

/// Every file that the daemon keeps current for the other programs of the product. All writes replace a file as
/// a whole; one that fails returns false and leaves the old file.
class DaemonFiles
{
public:
    explicit DaemonFiles(PathTable table);

    bool publishPort(quint16 port);

    /// `Username` of the user record; empty when nobody is signed in.
    [[nodiscard]] QString signedInAccount() const;

    /// Makes the list of current jobs this one job, or empty.
    bool setCurrentJob(const std::optional<RunningJob> &job);

    bool setSchedulerState(SchedulerState state);

    /// True when the user has switched all scheduled jobs off.
    [[nodiscard]] bool schedulesDisabled() const;

    bool setPauseMarker(const QString &account, bool paused);

    /// The part of the line that the user allows the account's backups, 1 to 100 percent.
    [[nodiscard]] int bandwidth(const QString &account) const;

    /// The schedule of this login that a job for `account` runs under: the repeating one that is due first,
    /// else an immediate one; of one kind, or of any.
    [[nodiscard]] std::optional<ScheduleRecord> scheduleFor(const QString &account,
                                                            std::optional<JobKind> kind = {}) const;

    /// Gives that schedule, or the one that is running, another status. With an end (`Completed`, `Cancelled`)
    /// it moves to its next time after `now`, and an immediate job, which has none, leaves the archive.
    bool setScheduleStatus(const QString &account, JobStatus status, const QDateTime &now,
                           std::optional<JobKind> kind = {});

    /// Puts right what a daemon that died in the middle of a job has left.
    void clearStaleState(const QDateTime &now);

    /// Tells every program to look at the schedules again. False when there is no session bus.
    bool announceScheduleChange() const;

private:
    using Records = std::vector<ScheduleRecord>;

    [[nodiscard]] static Records::const_iterator findSchedule(const Records &records, const QString &account,
                                                              std::optional<JobKind> kind);
    [[nodiscard]] QString throttlePath(const QString &account) const;

    PathTable m_table;
};

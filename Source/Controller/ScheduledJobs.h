#pragma once

#include "Classes/Progress/ProgressRules.h"
#include "Classes/Schedules/CorvaneSchedulerController.h"
#include "Classes/Schedules/ScheduleStatusRules.h"
#include "Platform/Clock.h"
#include "Source/Controller/MenuRules.h"

#include <QDateTime>
#include <QString>

#include <functional>
#include <optional>

class Account;

/// The scheduled jobs, as the schedule archive, the switch file and the job's markers tell of them. A question
/// reads the files as they are now, unless its comment says otherwise. Main thread only.
class ScheduledJobs
{
public:
    /// `isPressed` tells whether the user has paused the job in its window or menu, also before the daemon has
    /// left its marker.
    ScheduledJobs(const Account &account, const Clock &clock, std::function<bool()> isPressed);

    [[nodiscard]] CorvaneSchedulerController &scheduler() { return schedulerController; }

    /// Finds the account whose job runs at the start.
    void findRunningJob();
    /// The running job is over: no account's job runs.
    void jobHasEnded();

    [[nodiscard]] MenuRules::RunningJob runningJob();
    [[nodiscard]] bool isJobRunning() { return schedulerController.isScheduleBackupInProgress(); }
    [[nodiscard]] bool isScheduledBackupPaused() const; ///< the pause marker of the running job's account
    [[nodiscard]] bool isRunningJobPaused(); ///< a job runs, and is paused by marker, switch file or a press
    [[nodiscard]] bool isBackupJobPaused() const; ///< the throttle of the signed-in account is held at -1
    [[nodiscard]] bool isBackupInProgress();      ///< the status list names the signed-in or a job's account

    [[nodiscard]] std::optional<QString> switchText() const; ///< of the switch for all jobs; none if unreadable
    [[nodiscard]] ScheduleSwitch switchFile() const;
    /// Switches all jobs on or off.
    void setSwitch(const QString &word) const;

    /// The backup line of the tool tip when no other state has priority.
    [[nodiscard]] QString backupLine();
    /// The line that the next job alone gives.
    [[nodiscard]] QString nextJobLine();

    /// What the files say of the running job. Reports come by the thousand, so it is looked up at most once a
    /// turn of the event loop, and twice a second while nothing but figures comes.
    struct Facts {
        quint64 turn = 0;     ///< of the event loop, in which they were looked up
        quint64 recentIn = 0; ///< the last turn in which they were still recent
        QDateTime seen;
        MenuRules::RunningJob job = MenuRules::RunningJob::None;
        bool paused = false;
        bool menuFollows = false; ///< its items were brought in line
    };
    /// What they say now, or said a moment ago where a report of this type asks.
    [[nodiscard]] Facts &facts(std::optional<ProgressRules::ProgressType> type);
    /// They have changed.
    void forgetFacts() { m_facts.reset(); }
    [[nodiscard]] bool isReportOfRunningJob(const QString &userName);

private:
    [[nodiscard]] bool isRecent(const QDateTime &time) const;

    const Account &m_account;
    const Clock &m_clock;
    std::function<bool()> m_isPressed;
    CorvaneSchedulerController schedulerController;
    std::optional<Facts> m_facts;
};

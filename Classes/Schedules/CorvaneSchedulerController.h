#pragma once

#include "Classes/Schedules/ScheduleArchive.h"
#include "Platform/StampedFile.h"

#include <QDateTime>

#include <memory>
#include <optional>
#include <vector>

/// What the scheduler controller asks of the program around it.
class SchedulerRole
{
public:
    virtual ~SchedulerRole() = default;
    /// The backup account of the last sign-in.
    [[nodiscard]] virtual std::optional<QString> lastLoggedInUser() const = 0;
    /// The login name of whoever sits at the console, asked of the system anew.
    [[nodiscard]] virtual std::optional<QString> consoleUser() const = 0;
    /// Whether the account uses the storage engine.
    [[nodiscard]] virtual bool isTQL() const = 0;
    /// The full path of the schedule archive.
    [[nodiscard]] virtual std::optional<QString> schedulerSettingsFile() const = 0;
    [[nodiscard]] virtual QDateTime now() const = 0;
};

/// Answers every question about scheduled jobs from the archive as it is at the time of the question: the file
/// is decoded again whenever it has changed. A file that cannot be read holds no jobs. Main thread only.
class CorvaneSchedulerController
{
public:
    CorvaneSchedulerController();

    /// The dated job that comes next for the console user and the account of the last sign-in.
    [[nodiscard]] std::optional<CorvaneScheduleItem> nextScheduledItem();
    /// The first job to be started at once, of whatever user.
    [[nodiscard]] std::optional<CorvaneScheduleItem> getImmediateScheduledItem();
    /// All records of the store; never null.
    [[nodiscard]] std::shared_ptr<const ScheduleRecords> corvaneSchedulerDetailsForAllUsers();
    /// The items of `user`, "<account>: <login name>".
    [[nodiscard]] std::vector<CorvaneScheduleItem> corvaneSchedulerDetails(const QString &user);
    /// Whether a job runs. When one does, currentscheduleuser and currentScheduleType tell whose and which;
    /// when none does they stay, but an empty store empties currentscheduleuser.
    bool isScheduleBackupInProgress();
    /// Whether `account` has a scheduled online backup under the console user.
    [[nodiscard]] bool checkforAnyScheduledJob(const QString &account);

    /// Not owned; set while the program starts. Without it there is no store and no user.
    SchedulerRole *mainController = nullptr;
    std::optional<QNXScheduleType> currentScheduleType; ///< of the job found running last
    std::optional<QString> currentscheduleuser;         ///< account of the job found running last
    bool isScheduleBackupStoped = false;                ///< the user stopped the running job

private:
    FileMemo<ScheduleRecords> m_store;
    std::shared_ptr<const ScheduleRecords> m_noRecords = std::make_shared<ScheduleRecords>();
};

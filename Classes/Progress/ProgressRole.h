#pragma once

#include "Messaging/OutboundMessages.h"

#include <QString>
#include <QVariantMap>

#include <optional>

class CorvaneSchedulerController;

/// What the progress view asks of the program around it.
class ProgressRole
{
public:
    virtual ~ProgressRole() = default;

    /// Menu item, icon and tool tip say that the scheduled job is paused, after the switch file does.
    virtual void showScheduledJobPaused() = 0;
    /// They say that it goes on.
    virtual void showScheduledJobResumed() = 0;
    /// The scheduled job is over: no account's job runs, the menu offers nothing to pause or stop, and icon and
    /// tool tip say what comes next. Told alone, also when the job was paused.
    virtual void scheduledJobHasEnded() = 0;
    /// Whether the daemon's marker says that the running job is paused.
    [[nodiscard]] virtual bool isScheduledBackupPaused() const = 0;

    virtual void sendDataToDaemonForCoreOperation(const std::optional<QVariantMap> &details,
                                                  ECoreOperationActionType action) = 0;
    virtual void sendData(const QVariantMap &message, qint64 tag) = 0;

    [[nodiscard]] virtual CorvaneSchedulerController &scheduler() = 0;
    /// The backup account of the last sign-in.
    [[nodiscard]] virtual std::optional<QString> lastLoggedInUser() const = 0;
    /// The login name of whoever sits at the console.
    [[nodiscard]] virtual std::optional<QString> consoleUser() const = 0;

    /// True from the start of the program until a report has been shown.
    [[nodiscard]] virtual bool isMonitorLaunched() const = 0;
    virtual void setMonitorLaunched(bool launched) = 0;
};

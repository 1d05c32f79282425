// What the schedule archive and the job's markers say, turned into texts. Every question reads the files as
// they are now; the scheduler controller looks whether they changed.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Extensions/TextFormat.h"
#include "Platform/AtomicFile.h"
#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Paths/PathTable.h"

#include <QFileInfo>

#include <algorithm>

using namespace MonitorControllerVC;

ScheduleSwitch CorvaneMonitorController::switchFile() const
{
    return scheduleSwitch(AtomicFile::readText(schedulerStatusInfoPath));
}

std::optional<QString> CorvaneMonitorController::textOf(const BackupTip &tip) const
{
    switch (tip.kind) {
    case BackupTip::Kind::Leave:
        return std::nullopt;
    case BackupTip::Kind::Immediate:
        return NXTSCHEDULE_IMMEDIATE;
    case BackupTip::Kind::NoJobs:
        return NXTSCHEDULE_NOJOBS;
    case BackupTip::Kind::Next:
        return formatted(nextScheudletime, {tip.time});
    case BackupTip::Kind::Disabled:
        return disableScheduledJobsTooltip;
    case BackupTip::Kind::Paused:
        return scheduleJobPausedTooltip;
    case BackupTip::Kind::InProgress:
        return backupProgressTooltip;
    }
    return std::nullopt;
}

void CorvaneMonitorController::updateSchedulerStatus()
{
    currentScheduledItemForJob = schedulerController.nextScheduledItem();
    corvaneDaemonTooltip =
        textOf(tipForNextJob(currentScheduledItemForJob ? &*currentScheduledItemForJob : nullptr));
}

void CorvaneMonitorController::checkAndDisplayScheduleToolTip()
{
    BackupTipInputs in;
    in.jobRuns = schedulerController.isScheduleBackupInProgress();
    in.runningJobIsPaused = in.jobRuns && isScheduledBackupPaused();
    if (!in.jobRuns) {
        in.jobs = switchFile();
        if (in.jobs != ScheduleSwitch::Disabled) {
            in.hasImmediateJob = schedulerController.getImmediateScheduledItem().has_value();
            currentScheduledItemForJob = schedulerController.nextScheduledItem();
            in.next = currentScheduledItemForJob ? &*currentScheduledItemForJob : nullptr;
        }
    }
    if (const auto text = textOf(tipForSchedules(in)))
        setStatusMenuToolTip(text, std::nullopt);
}

bool CorvaneMonitorController::isScheduledBackupPaused() const
{
    const QString user = schedulerController.currentscheduleuser.value_or(QString());
    const QString throttleFile = pathValue(QLatin1String("BandwidthThrottleFilePathForTql"), {user});
    return isPauseMarker(AtomicFile::readText(QFileInfo(throttleFile).path() + QStringLiteral("/pause.txt")));
}

bool CorvaneMonitorController::isBackupJobPaused() const
{
    const QString path =
        pathValue(QLatin1String("BackupJobThrottlePath"), {m_lastLoggedInUser.value_or(QString())});
    return AtomicFile::readText(path) == QStringLiteral("-1");
}

bool CorvaneMonitorController::isBackupInProgress()
{
    const QVariantMap status =
        PropertyList::readDictionary(pathValue(QLatin1String("ApplicationStatusPath"), {}))
            .value_or(QVariantMap());
    if (PropertyList::textValue(status, QStringLiteral("Interactive")).value_or(QString()) == signedInUser() &&
        !signedInUser().isEmpty())
        return true;
    const auto scheduled = PropertyList::textValue(status, QStringLiteral("Schedule"));
    const auto records = schedulerController.corvaneSchedulerDetailsForAllUsers();
    return scheduled && std::ranges::any_of(*records, [&](const auto &item) {
               return item && item->corvaneUsername == scheduled;
           });
}

bool CorvaneMonitorController::checkforAnyScheduledJob(const QString &user)
{
    loggedInProfile = ::consoleUser();
    return schedulerController.hasScheduledOnlineBackup(user);
}

std::optional<QString> CorvaneMonitorController::lastLoggedInUser() const
{
    return m_lastLoggedInUser;
}

std::optional<QString> CorvaneMonitorController::consoleUser() const
{
    return ::consoleUser();
}

bool CorvaneMonitorController::isTQL() const
{
    const auto record = UserRecords::getActiveUserDetails();
    return record && PropertyList::boolValue(*record, QStringLiteral("isTQL")).value_or(false);
}

std::optional<QString> CorvaneMonitorController::schedulerSettingsFile() const
{
    return pathValue(QLatin1String("SchedulerSettingsFile"), {});
}

QDateTime CorvaneMonitorController::now() const
{
    return m_clock.now();
}

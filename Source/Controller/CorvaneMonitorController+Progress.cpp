// A job's reports on their way to icon and tool tip. They may come by the thousand: what the files say of the
// job is looked up once a turn of the event loop, and a report that changes nothing on the screen ends after
// its rule.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Platform/AtomicFile.h"
#include "Platform/MainThread.h"
#include "Source/Controller/ReportRules.h"
#include "Utility/CVSingletonForBackup.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Paths/PathTable.h"

#include <tuple>

using namespace MonitorControllerVC;
using ReportRules::ProgressType;

void CorvaneMonitorController::didReceiveIPCMessageOperationForProgress(const DaemonMessage &report)
{
    const auto userName = report.userName();
    const auto type = ReportRules::progressType(report.progressType());
    switch (ReportRules::route(userName, report.operationStartType())) {
    case ReportRules::Route::Drop:
        return;
    case ReportRules::Route::Interactive:
        return didReceiveInteractiveOperationProgress(type);
    case ReportRules::Route::Scheduled:
        if (isReportOfRunningJob(*userName))
            didReceiveOperationProgress(report, type);
        return;
    }
}

const CorvaneMonitorController::JobFacts &CorvaneMonitorController::jobFacts()
{
    const quint64 turn = mainThreadTurn();
    if (!m_jobFacts || m_jobFacts->turn != turn) {
        dataDict = UserRecords::getActiveUserDetails().value_or(QVariantMap());
        const bool inProgress = schedulerController.isScheduleBackupInProgress();
        m_jobFacts = JobFacts{turn, inProgress, isScheduledBackupPaused()};
    }
    return *m_jobFacts;
}

bool CorvaneMonitorController::isReportOfRunningJob(const QString &userName)
{
    if (!schedulerController.currentscheduleuser)
        return false;
    if (schedulerController.currentscheduleuser == userName)
        return true;
    // Another account's job may have begun since; the archive tells.
    std::ignore = jobFacts();
    return schedulerController.currentscheduleuser == userName;
}

void CorvaneMonitorController::didReceiveInteractiveOperationProgress(std::optional<ProgressType> type)
{
    showReportTip(ReportRules::interactiveTip(type));
    if (type == ProgressType::Complete)
        checkForTotalQuota();
}

void CorvaneMonitorController::didReceiveOperationProgress(const DaemonMessage &report,
                                                           std::optional<ProgressType> type)
{
    const JobFacts &facts = jobFacts();
    showReportTip(ReportRules::scheduledTip(type, facts.inProgress, facts.paused));
    backUpProgressResponseDict = report;
    if (type == ProgressType::Started || type == ProgressType::Figures)
        CVSingletonForBackup::shared().scheduleBackupRunning = true;
    if (type == ProgressType::Started)
        enableDisableManageSubMenus();
    if (type == ProgressType::Paused)
        schedulePaused();
    else if (type == ProgressType::Resumed)
        scheduleResumed();
    else if (type == ProgressType::Complete)
        scheduleEnded();
}

void CorvaneMonitorController::showReportTip(ReportRules::Tip tip)
{
    const ReportTip shown{mainThreadTurn(), tip};
    if (tip == ReportRules::Tip::Keep || m_reportTip == shown)
        return;
    switch (tip) {
    case ReportRules::Tip::Keep:
        break;
    case ReportRules::Tip::InteractiveProgress:
        setStatusMenuToolTip(intBackupProgressTooltip.text(), syncDaemonTooltip);
        break;
    case ReportRules::Tip::InteractivePaused:
        setStatusMenuToolTip(intBackupPausedTooltip.text(), syncDaemonTooltip);
        break;
    case ReportRules::Tip::ScheduledProgress:
        setStatusMenuToolTip(backupProgressTooltip.text(), syncDaemonTooltip);
        break;
    case ReportRules::Tip::ScheduledPaused:
        setStatusMenuToolTip(scheduleJobPausedTooltip.text(), syncDaemonTooltip);
        break;
    }
    m_reportTip = shown;
}

void CorvaneMonitorController::schedulePaused()
{
    m_menu.apply(MenuItem::PauseJob, {.title = resumeScheduleJob.text()});
    setStatusMenuIconForState(MenuIcons::paused);
    setStatusMenuToolTip(scheduleJobPausedTooltip.text(), syncDaemonTooltip);
    std::ignore = AtomicFile::writeText(schedulerStatusInfoPath, QStringLiteral("2"));
}

void CorvaneMonitorController::scheduleResumed()
{
    m_menu.apply(MenuItem::PauseJob, {.title = pauseScheduleJob.text()});
    const QString tip = isBackupInProgress() ? backupProgressTooltip.text()
                                             : localized(pathValue(QLatin1String("ApplicationFullName")));
    setStatusMenuToolTip(tip, syncDaemonTooltip);
    std::ignore = AtomicFile::writeText(schedulerStatusInfoPath, QStringLiteral("1"));
    setStatusMenuIconForState(MenuIcons::normal); // last: it reads what was just written
}

void CorvaneMonitorController::scheduleEnded()
{
    scheduleResumed(); // a job that ended while it was paused leaves no pause behind
    schedulerController.currentscheduleuser = QString();
    CVSingletonForBackup::shared().scheduleBackupRunning = false;
    m_jobFacts.reset();
    enableDisableManageSubMenus();
    setStatusMenuIconForState(MenuIcons::normal);
}

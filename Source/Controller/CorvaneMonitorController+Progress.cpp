// A job's reports on their way to icon, tool tip and progress window, and what the menu has done to the job.
// Reports may come by the thousand: what the files say of the job is looked up at most once a turn of the event
// loop, and twice a second while nothing but figures comes.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Platform/MainThread.h"
#include "Platform/PropertyList.h"
#include "Source/Controller/ReportRules.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/CVSingletonForBackup.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Paths/PathTable.h"

#include <tuple>
#include <utility>

using namespace MonitorControllerVC;
using ProgressRules::ProgressType;
using namespace std::chrono_literals;

namespace
{
constexpr Clock::Duration LookPeriod = 500ms; ///< between two looks at the files while figures come
}

void CorvaneMonitorController::didReceiveIPCMessageOperationForProgress(const DaemonMessage &report)
{
    const auto userName = report.userName();
    const auto type = ProgressRules::progressType(report.progressType());
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

bool CorvaneMonitorController::isRecent(const QDateTime &time) const
{
    const QDateTime now = m_clock.now();
    return time <= now && now < time.addMSecs(LookPeriod.count());
}

CorvaneMonitorController::JobFacts &CorvaneMonitorController::jobFacts(std::optional<ProgressType> type)
{
    const quint64 turn = mainThreadTurn();
    if (m_jobFacts && m_jobFacts->turn == turn)
        return *m_jobFacts;
    // Figures come by the dozen each second and change nothing of this; any other report does.
    if (m_jobFacts && type == ProgressType::Figures) {
        if (m_jobFacts->recentIn == turn || isRecent(m_jobFacts->seen)) {
            m_jobFacts->recentIn = turn;
            return *m_jobFacts;
        }
    }
    dataDict = UserRecords::getActiveUserDetails().value_or(QVariantMap());
    const MenuRules::RunningJob job = runningJob();
    m_jobFacts = JobFacts{.turn = turn, .seen = m_clock.now(), .job = job, .paused = isScheduledBackupPaused()};
    return *m_jobFacts;
}

bool CorvaneMonitorController::isReportOfRunningJob(const QString &userName)
{
    if (!schedulerController.currentscheduleuser)
        return false;
    if (schedulerController.currentscheduleuser == userName)
        return true;
    // Another account's job may have begun since; the archive tells.
    std::ignore = jobFacts(std::nullopt);
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
    JobFacts &facts = jobFacts(type);
    if (!std::exchange(facts.menuFollows, true))
        enableDisableManageSubMenus(facts.job);
    showReportTip(ReportRules::scheduledTip(type, facts.job != MenuRules::RunningJob::None, facts.paused));
    progressView().progressReceivedData(report);
}

void CorvaneMonitorController::didReceiveOlderProgress(const QVariantList &array)
{
    QVariantList args{array.value(1), array.value(2), array.value(4), array.value(3)};
    if (array.size() > 5)
        args.append(array.at(5));
    progressView().showscheduleprogress(args);
}

CVScheduleProgressViewController &CorvaneMonitorController::progressView()
{
    CVScheduleProgressViewController &view = m_progressWindow.viewController();
    view.mainController = this;
    return view;
}

void CorvaneMonitorController::showReportTip(ReportRules::Tip tip)
{
    if (tip == ReportRules::Tip::Keep || m_reportTip == tip)
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
    m_reportTip = tip;
}

void CorvaneMonitorController::showScheduledJobPaused()
{
    m_jobFacts.reset();
    m_menu.apply(MenuItem::PauseJob, {.title = resumeScheduleJob.text()});
    setStatusMenuIconForState(MenuIcons::paused);
    setStatusMenuToolTip(scheduleJobPausedTooltip.text(), syncDaemonTooltip);
}

void CorvaneMonitorController::showScheduledJobResumed()
{
    m_jobFacts.reset();
    m_menu.apply(MenuItem::PauseJob, {.title = pauseScheduleJob.text()});
    setStatusMenuIconForState(MenuIcons::normal);
    const QString tip = isBackupInProgress() ? backupProgressTooltip.text()
                                             : localized(pathValue(QLatin1String("ApplicationFullName")));
    setStatusMenuToolTip(tip, syncDaemonTooltip);
}

void CorvaneMonitorController::scheduledJobHasEnded()
{
    schedulerController.currentscheduleuser = QString();
    m_jobFacts.reset();
    enableDisableManageSubMenus(runningJob());
    evaluateStatusIcon();
}

void CorvaneMonitorController::evaluateStatusIcon()
{
    setStatusMenuIconForState(MenuIcons::normal);
}

void CorvaneMonitorController::showProgressBtnClicked()
{
    QNLogger::logMonitorTrace(QStringLiteral("Start of ShowProgress from CorvaneMonitor"));
    CVScheduleProgressViewController &view = progressView();
    const auto shown = ReportRules::progressToShow(
        PropertyList::readDictionary(pathValue(QLatin1String("CurrentJobs"), {})).value_or(QVariantMap()),
        signedInUser());
    if (shown.inWindow && CVSingletonForBackup::shared().scheduleBackupRunning)
        m_progressWindow.showWindow();
    if (shown.inMainApplication)
        launchApplication();
    view.showState();
    QNLogger::logMonitorTrace(QStringLiteral("End of ShowProgress from CorvaneMonitor"));
}

void CorvaneMonitorController::showSchedulerProgress()
{
    if (!CVSingletonForBackup::shared().scheduleBackupRunning)
        return;
    CVScheduleProgressViewController &view = progressView();
    m_progressWindow.showWindow();
    view.showState();
}

void CorvaneMonitorController::pauseBtnSubMenuActn()
{
    const bool saysPause = m_menu.title(MenuItem::PauseJob) == pauseScheduleJob;
    progressView().SCpauseresume(saysPause ? CVScheduleProgressViewController::PauseTag
                                           : CVScheduleProgressViewController::ResumeTag);
}

void CorvaneMonitorController::stopBtnSubMenuActn()
{
    progressView().stopSchedulerSubmenu();
}

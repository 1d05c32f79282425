#include "Source/Controller/JobReports.h"

#include "Platform/KeptFiles.h"
#include "Source/Controller/Account.h"
#include "Source/Controller/Launcher.h"
#include "Source/Controller/MenuKeeper.h"
#include "Source/Controller/StatusBoard.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/CVSingletonForBackup.h"
#include "Utility/Paths/PathTable.h"

#include <utility>

using namespace Qt::StringLiterals;
using ProgressRules::ProgressType;

namespace
{
/// How long a wish to see a job waits for the job's first report: later, a window would come out of the blue.
constexpr std::chrono::seconds FirstReportPatience{10};
} // namespace

JobReports::JobReports(CVScheduleProgressWindowController &window, const Others &others)
    : m_window(window), m_others(others)
{
}

bool JobReports::didReceiveIPCMessageOperationForProgress(const DaemonMessage &report)
{
    const auto userName = report.userName();
    const auto type = ProgressRules::progressType(report.progressType());
    switch (ReportRules::route(userName, report.operationStartType())) {
    case ReportRules::Route::Drop:
        return false;
    case ReportRules::Route::Interactive:
        m_others.board.showReportTip(ReportRules::interactiveTip(type));
        return type == ProgressType::Complete;
    case ReportRules::Route::Scheduled:
        if (m_others.jobs.isReportOfRunningJob(*userName))
            didReceiveOperationProgress(report, type);
        return false;
    }
    return false;
}

void JobReports::didReceiveOperationProgress(const DaemonMessage &report, std::optional<ProgressType> type)
{
    ScheduledJobs::Facts &facts = m_others.jobs.facts(type);
    if (!std::exchange(facts.menuFollows, true))
        m_others.menu.enableDisableManageSubMenus(facts.job);
    const bool runs = facts.job != MenuRules::RunningJob::None;
    m_others.board.showReportTip(ReportRules::scheduledTip(type, runs, facts.paused));
    view().progressReceivedData(report);
    showWindowIfWanted();
}

void JobReports::didReceiveOlderProgress(const QVariantList &array)
{
    QVariantList args{array.value(1), array.value(2), array.value(4), array.value(3)};
    if (array.size() > 5)
        args.append(array.at(5));
    view().showscheduleprogress(args);
    showWindowIfWanted();
}

void JobReports::lookForUnheardChanges()
{
    m_others.jobs.forgetFacts();
    view().lookForUnheardChanges(m_others.jobs.isJobRunning());
}

void JobReports::pause()
{
    view().SCpauseresume(JobOrder::Pause);
}

void JobReports::resume()
{
    view().SCpauseresume(JobOrder::Resume);
}

void JobReports::pauseBtnSubMenuActn()
{
    if (m_others.menu.offersPause())
        pause();
    else
        resume();
}

void JobReports::stopBtnSubMenuActn()
{
    view().stopSchedulerSubmenu();
}

void JobReports::updateBandwidth()
{
    view().updateBandwidthMacInUseValueReceivedFromRM();
}

void JobReports::showProgressBtnClicked()
{
    QNLogger::logMonitorTrace(u"Start of ShowProgress from CorvaneMonitor"_s);
    const auto shown = ReportRules::progressToShow(
        KeptFiles::dictionary(pathValue("CurrentJobs"_L1, {})).value_or(QVariantMap()),
        m_others.account.signedInUser());
    if (shown.inWindow)
        showWindowOfJob();
    if (shown.inMainApplication)
        m_others.launcher.launchApplication();
    view().showState();
    QNLogger::logMonitorTrace(u"End of ShowProgress from CorvaneMonitor"_s);
}

void JobReports::showSchedulerProgress()
{
    showWindowOfJob();
}

void JobReports::showWindowIfWanted()
{
    if (CVSingletonForBackup::shared().scheduleBackupRunning && !m_windowWanted.hasExpired())
        showWindowOfJob();
}

void JobReports::showWindowOfJob()
{
    if (!CVSingletonForBackup::shared().scheduleBackupRunning) {
        m_windowWanted.setRemainingTime(FirstReportPatience);
        return;
    }
    m_windowWanted = QDeadlineTimer();
    m_window.showWindow();
    view().showState();
}

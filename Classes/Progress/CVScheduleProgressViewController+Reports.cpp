// Reports of the running job. A figure that a report leaves out stays as it was. What changes the job's state
// is taken at once. Figures wait until they are shown; before anything else changes the state, those that wait
// are taken.

#include "Classes/Progress/CVScheduleProgressViewController.h"

#include "Classes/Schedules/CorvaneSchedulerController.h"
#include "Platform/AtomicFile.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/WriteTrace.h"
#include "Utility/CVSingletonForBackup.h"
#include "Utility/Language/SchedulerProgressVC.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/UserRecords.h"

#include <utility>

using namespace Qt::StringLiterals;

using namespace SchedulerProgressVC;
using namespace ProgressRules;

namespace
{
constexpr QLatin1StringView PauseState("operationData/pauseState");

std::optional<qint64> operationType(const DaemonMessage &report)
{
    return report.integer("operationType"_L1);
}
} // namespace

void CVScheduleProgressViewController::progressReceivedData(const DaemonMessage &report)
{
    m_heardSincePass = true;
    const auto figures = isFiguresAlone(report) ? ReportFigures::of(report) : std::nullopt;
    if (m_waitingFigures && !(figures && figures->replace(*m_waitingFigures)))
        takeWaitingFigures();
    backUpProgressResponseDict = report;
    m_waitingFigures = figures;
    if (!figures)
        handleProgressResponse(report);
    changed();
}

void CVScheduleProgressViewController::lookForUnheardChanges(bool jobRuns)
{
    takeWaitingFigures();
    const bool heard = std::exchange(m_heardSincePass, false);
    const bool standsHere = CVSingletonForBackup::shared().scheduleBackupRunning || m_isSchedulePaused;
    if (!jobRuns && !heard && standsHere)
        resetSchedulerProgress();
    else if (m_markerPauses && !(mainController && mainController->isScheduledBackupPaused()))
        resumeToPause();
}

/// True for a report that changes figures and nothing of the job's state.
bool CVScheduleProgressViewController::isFiguresAlone(const DaemonMessage &report) const
{
    return progressType(report.progressType()) == ProgressType::Figures && !isProgressAnimating &&
           !isNewsOfRunningJob(report);
}

void CVScheduleProgressViewController::takeWaitingFigures()
{
    if (const auto figures = std::exchange(m_waitingFigures, std::nullopt))
        showProgressForScheduleOperation(*figures);
}

void CVScheduleProgressViewController::handleProgressResponse(const DaemonMessage &report)
{
    const auto type = progressType(report.progressType());
    if (!type)
        return;
    switch (*type) {
    case ProgressType::Started:
        return operationStarted(report);
    case ProgressType::Figures:
        return operationReceivedProgressData(report);
    case ProgressType::EnumerationComplete:
        progressStarted = true;
        return;
    case ProgressType::Retrying:
        return operationRetries();
    case ProgressType::Paused:
        if (isNewsOfRunningJob(report))
            joinRunningOperation(report);
        return receivedPauseForScheduleOperation();
    case ProgressType::Resumed:
        return resetViewAfterPauseForScheduleOperation();
    case ProgressType::Complete:
        return resetSchedulerProgress();
    }
}

void CVScheduleProgressViewController::operationStarted(const DaemonMessage &report)
{
    if (mainController) {
        CorvaneSchedulerController &scheduler = mainController->scheduler();
        scheduler.isScheduleBackupInProgress(); // whose job runs
        scheduler.isScheduleBackupStoped = false;
        mainController->setMonitorLaunched(false);
    }
    if (!report.contains(PauseState))
        endPauseOfFormerJob();
    reSetSchedulerProgressWindow();
    CVSingletonForBackup::shared().scheduleBackupRunning = true;
    m_display.scProgressText.isShown = false;
    m_display.progressPercent = 0;
    setUIForScheduleProgress(report);
}

/// A job may have ended unheard, while the channel or this program was away; its pause isn't the next one's.
void CVScheduleProgressViewController::endPauseOfFormerJob()
{
    const bool pauseStands = m_isSchedulePaused || scheduleSwitch(switchText()) == ScheduleSwitch::JobPaused;
    if (pauseStands && !(mainController && mainController->isScheduledBackupPaused()))
        resetViewAfterPauseForScheduleOperation();
}

/// Whether a job turns out to run that this window knows nothing of: the monitor started, or the channel was
/// away, while it began. A job that the user has stopped is not taken up again by its last reports.
bool CVScheduleProgressViewController::isNewsOfRunningJob(const DaemonMessage &report) const
{
    if (!mainController)
        return false;
    CorvaneSchedulerController &scheduler = mainController->scheduler();
    const bool isUnknown =
        mainController->isMonitorLaunched() ||
        (!CVSingletonForBackup::shared().scheduleBackupRunning && !scheduler.isScheduleBackupStoped);
    if (!isUnknown)
        return false;
    const auto data = report.object("operationData"_L1);
    return data && data->memberCount() > 0 &&
           scheduler.isScheduleBackupInProgress(); // or it is a late report of a job that is over
}

void CVScheduleProgressViewController::joinRunningOperation(const DaemonMessage &report)
{
    CVSingletonForBackup::shared().scheduleBackupRunning = true;
    if (progressType(report.progressType()) != ProgressType::Paused && !report.contains(PauseState))
        endPauseOfFormerJob();
    setUIForScheduleProgress(report);
    mainController->setMonitorLaunched(false);
}

void CVScheduleProgressViewController::operationReceivedProgressData(const DaemonMessage &report)
{
    if (isNewsOfRunningJob(report))
        joinRunningOperation(report);
    if (isProgressAnimating)
        showMainPane();
    if (const auto figures = ReportFigures::of(report))
        showProgressForScheduleOperation(*figures);
}

void CVScheduleProgressViewController::setUIForScheduleProgress(const DaemonMessage &report)
{
    const auto userName = report.userName();
    if (!userName)
        return;
    emailForUser = presentable(userName->toStdString());
    m_display.progressBarIsShown = false;
    progressStarted = false;
    showPreparingPane(prepFilelist);

    const auto type = operationType(report);
    if (type == 0)
        loadThrottleSettings();
    const auto record = UserRecords::getActiveUserDetails().value_or(QVariantMap());
    if (const auto group = groupAtStart(type, PropertyList::textValue(record, u"dedup"_s)))
        showGroup(*group);
    m_display.scPauseButtonIsShown = canBePaused(type);
    m_display.titleEmailLabel = titleLine(emailForUser, prorgessTitile);
    progressStarted = report.contains("operationData/showPercentage"_L1);
    m_display.progressBarIsShown = progressStarted;
    if (report.contains(PauseState))
        receivedPauseForScheduleOperation();
}

void CVScheduleProgressViewController::showProgressForScheduleOperation(const ReportFigures &report)
{
    m_figures.begin();
    report.members.forEachText(
        [this](std::string_view name, std::string_view text) { m_figures.take(name, text); });
    using Figure = ProgressFigures::Figure;
    const auto show = [this](Figure figure, QString &field) {
        if (m_figures.has(figure))
            field = m_figures.text(figure);
    };
    showGroup(report.group);
    m_display.scProgressStatus.isShown = false;
    if (report.group == FieldGroup::BackupInfo) {
        m_display.bandwidthBgViewIsShown = false;
        show(Figure::ElapsedTime, m_display.scElapsedTime);
        show(Figure::EstimatedTime, m_display.scEstimatedTime.text);
    } else {
        show(Figure::RemainingFiles, m_display.scRemainingFiles_Dedup);
        show(Figure::CompletedFiles, m_display.scCompletedFiles_Dedup);
        show(Figure::ElapsedTime, m_display.scElapsedTime_Dedup.text);
        m_display.scElapsedTime_Dedup.isShown = true;
        show(Figure::EstimatedTime, m_display.scEstimatedTime_Dedup);
    }
    showPercentage();
    show(Figure::TransferSpeed, m_display.scSpeedText);
    showFileLine();
}

void CVScheduleProgressViewController::showPercentage()
{
    const auto percent = m_figures.has(ProgressFigures::Percentage)
                             ? percentage(m_figures.bytes(ProgressFigures::Percentage))
                             : std::nullopt;
    if (!percent)
        return;
    m_display.scProgressText.isShown = progressStarted;
    if (progressStarted && *percent > 0) {
        showPercent(*percent);
    } else if (!progressStarted || *percent == 0) {
        m_display.scEstimatedTime_Dedup = calculating;
        m_display.scEstimatedTime.text = calculating;
    }
}

void CVScheduleProgressViewController::showPercent(qint64 percent)
{
    m_display.progressPercent = int(std::min<qint64>(percent, 100));
    m_display.scProgressText = {percentText(m_display.progressPercent), true};
}

void CVScheduleProgressViewController::FileFigures::take(const ProgressFigures &figures)
{
    // Assigned to, so that thousands of reports take no memory anew.
    transferMode.assign(figures.bytes(ProgressFigures::TransferMode));
    fileName.assign(figures.bytes(ProgressFigures::FileName));
    fileSize.assign(figures.bytes(ProgressFigures::FileSize));
    areNew = true;
}

void CVScheduleProgressViewController::showFileLine()
{
    if (m_figures.has(ProgressFigures::FileName) && m_figures.has(ProgressFigures::TransferMode) &&
        m_figures.has(ProgressFigures::FileSize))
        m_fileFigures.take(m_figures);
}

void CVScheduleProgressViewController::showGroup(FieldGroup group)
{
    m_display.scFileCountViewIsShown = group == FieldGroup::FileCounts;
    m_display.backupInfoBgViewIsShown = group == FieldGroup::BackupInfo;
}

void CVScheduleProgressViewController::showPreparingPane(const QString &text)
{
    isProgressAnimating = true;
    m_display.preparingText = text;
}

void CVScheduleProgressViewController::showMainPane()
{
    isProgressAnimating = false;
    m_display.progressBarIsShown = true;
}

void CVScheduleProgressViewController::operationRetries()
{
    if (isProgressAnimating)
        showPreparingPane(retrying);
    else
        m_display.scProgressStatus = {retrying, true};
}

void CVScheduleProgressViewController::receivedPauseForScheduleOperation()
{
    pauseToResume();
    writeSwitchFile(ScheduleSwitch::JobPaused);
    if (mainController)
        mainController->showScheduledJobPaused();
}

void CVScheduleProgressViewController::resetViewAfterPauseForScheduleOperation()
{
    resumeToPause();
    writeSwitchFile(ScheduleSwitch::Enabled);
    if (mainController)
        mainController->showScheduledJobResumed();
}

void CVScheduleProgressViewController::resetSchedulerProgress()
{
    ++m_endedJobs;
    restore = false;
    resumeToPause(); // a job that ended while it was paused leaves no pause behind
    writeSwitchFile(ScheduleSwitch::Enabled);
    CVSingletonForBackup::shared().scheduleBackupRunning = false;
    closeWindow();
    if (mainController)
        mainController->scheduledJobHasEnded();
    reSetSchedulerProgressWindow();
}

void CVScheduleProgressViewController::reSetSchedulerProgressWindow()
{
    if (!progressStarted)
        m_display.preparingText = prepFilelist;
    if (!CVSingletonForBackup::shared().scheduleBackupRunning) {
        m_display.backupInfoBgViewIsShown = true;
        m_display.scEstimatedTime.text.clear();
        m_display.scElapsedTime = u"00:00:00"_s;
        m_display.scPauseButtonIsShown = false;
        m_display.progressBarIsShown = false;
        m_display.progressPercent = 0;
    }
    m_display.scFileCountViewIsShown = false;
    m_display.scStopButtonIsShown = true;
    for (QString *text :
         {&m_display.scEstimatedTime_Dedup, &m_display.scElapsedTime_Dedup.text,
          &m_display.scRemainingFiles_Dedup, &m_display.scCompletedFiles_Dedup, &m_display.scProgressText.text,
          &m_display.scFilePath, &m_display.scSpeedText, &m_display.scProgressStatus.text})
        text->clear();
    m_fileFigures.areNew = false;
    m_display.scElapsedTime_Dedup.isShown = false;
}

void CVScheduleProgressViewController::pauseToResume()
{
    m_isSchedulePaused = true;
    m_display.titleEmailLabel = titleLine(emailForUser, pausedTitle);
    checkOperationDetailedTypeToDisplayBandwidth();
    changed();
}

void CVScheduleProgressViewController::resumeToPause()
{
    m_isSchedulePaused = m_markerPauses = false;
    m_display.titleEmailLabel = titleLine(emailForUser, prorgessTitile);
    checkOperationDetailedTypeToDisplayBandwidth();
    changed();
}

void CVScheduleProgressViewController::checkOperationDetailedTypeToDisplayBandwidth()
{
    const auto figures =
        backUpProgressResponseDict ? ReportFigures::of(*backUpProgressResponseDict) : std::nullopt;
    if (!figures)
        return;
    if (figures->group == FieldGroup::BackupInfo)
        m_display.bandwidthBgViewIsShown = false;
    else
        loadThrottleSettings();
}

std::optional<QString> CVScheduleProgressViewController::switchText()
{
    return AtomicFile::readText(pathValue("SchedulerStatusInfoPath"_L1, {}));
}

void CVScheduleProgressViewController::writeSwitchFile(ScheduleSwitch state)
{
    if (const auto word = switchAfterJob(switchText(), state))
        writeTextOrTrace(pathValue("SchedulerStatusInfoPath"_L1, {}), *word);
}

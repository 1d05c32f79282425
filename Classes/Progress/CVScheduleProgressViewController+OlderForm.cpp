// Reports of the older form, which comes as an array of figures, phase, kind of job and account. It knows fewer
// states than the current form, and tells a restore by its kind.

#include "Classes/Progress/CVScheduleProgressViewController.h"

#include "Utility/CVSingletonForBackup.h"
#include "Utility/Language/SchedulerProgressVC.h"
#include "Utility/Paths/UserType.h"

#include <utility>

using namespace Qt::StringLiterals;

using namespace SchedulerProgressVC;
using namespace ProgressRules;

namespace
{
const QString OnlineBackup = u"SchOnlineBackup"_s;
const QString LocalBackup = u"SchLocalBackup"_s;
const QString Restore = u"SchRestore"_s;
/// The fifth entry of a report, under the key that the display asks for.
const QString NetworkBackupKey = u"NetwokBackup"_s;

const QString PauseKey = u"Pause"_s;

constexpr qsizetype FewestEntries = 4;
constexpr qsizetype EntriesWithNetworkBackup = 5;

bool isDeduplicating()
{
    return QNUtility::userType == EUserType::Dedup;
}

/// The only kind of job and account that shows an estimate from the beginning.
bool showsEstimate(const QString &kind)
{
    return !isDeduplicating() && kind != OnlineBackup;
}

/// The percentage came as a text of digits or as a number.
std::optional<qint64> percentageIn(const QVariantMap &figures)
{
    const QVariant value = figures.value(u"percentage"_s);
    if (value.typeId() == QMetaType::QString)
        return percentage(value.toString().toStdString());
    return value.typeId() == QMetaType::LongLong ? std::optional(value.toLongLong()) : std::nullopt;
}
} // namespace

void CVScheduleProgressViewController::showscheduleprogress(const QVariantList &args)
{
    if (args.size() < FewestEntries)
        return;
    QVariantMap figures = args.at(0).toMap();
    const QString phase = args.at(1).toString();
    const QString kind = args.at(2).toString();
    if (args.size() == EntriesWithNetworkBackup)
        figures.insert(NetworkBackupKey, args.at(4));

    m_heardSincePass = true;
    takeWaitingFigures();
    backUpProgressResponseDict.reset(); // what it says is older than this report
    emailForUser = presentable(args.at(3).toString().toStdString());
    SchOnlineBackup = isDeduplicating() && kind == OnlineBackup;
    m_display.scFileCountViewIsShown = SchOnlineBackup;

    bool &jobRuns = CVSingletonForBackup::shared().scheduleBackupRunning;
    if (phase == u"Start") {
        olderFormStarted(kind, figures);
    } else if (phase == u"SizeCalculated") {
        progressStarted = true;
        showMainPane();
        if (showsEstimate(kind))
            m_display.scEstimatedTime.isShown = true;
    } else if (phase == u"InProgress") {
        olderFormProgress(kind, figures);
    } else if (phase == u"Success") {
        resetSchedulerProgress();
    } else if (phase == u"Retry") {
        jobRuns = true;
        operationRetries();
    }
    changed();
}

void CVScheduleProgressViewController::takeOlderFormKind(const QString &kind)
{
    if (kind == Restore)
        restore = true;
    else if (kind == OnlineBackup || kind == LocalBackup)
        restore = false;
    m_display.titleEmailLabel = titleLine(emailForUser, m_isSchedulePaused ? pausedTitle : prorgessTitile);
}

void CVScheduleProgressViewController::olderFormStarted(const QString &kind, const QVariantMap &figures)
{
    if (!figures.contains(PauseKey))
        endPauseOfFormerJob();
    if (mainController)
        mainController->setMonitorLaunched(false);
    CVSingletonForBackup::shared().scheduleBackupRunning = true;
    m_display.progressBarIsShown = false;
    reSetSchedulerProgressWindow();
    progressStarted = false;
    m_display.scPauseButtonIsShown = false;
    showPreparingPane(prepFilelist);
    if (showsEstimate(kind))
        m_display.backupInfoBgViewIsShown = false;
    takeOlderFormKind(kind);
}

void CVScheduleProgressViewController::olderFormProgress(const QString &kind, const QVariantMap &figures)
{
    const bool joins = !std::exchange(CVSingletonForBackup::shared().scheduleBackupRunning, true);
    if (joins && !figures.contains(PauseKey))
        endPauseOfFormerJob();
    takeOlderFormKind(kind);
    if (mainController)
        mainController->setMonitorLaunched(false);
    progressStarted = figures.contains(u"showPercentage"_s);
    if (isProgressAnimating)
        showMainPane();
    progressView(figures);
}

void CVScheduleProgressViewController::progressView(const QVariantMap &data)
{
    if (data.contains(PauseKey))
        showOlderPause();
    m_display.scStopButtonIsShown = true;
    m_display.scPauseButtonIsShown = !restore;

    using Figure = ProgressFigures::Figure;
    m_figures.begin();
    m_figures.take(data);
    if (!m_figures.has(Figure::ElapsedTime))
        return;
    const auto show = [this](Figure figure, QString &field) {
        if (m_figures.has(figure))
            field = m_figures.text(figure);
    };
    show(Figure::ElapsedTime, m_display.scElapsedTime);
    const bool isNetworkBackup = data.contains(NetworkBackupKey);
    showGroup(isNetworkBackup ? FieldGroup::BackupInfo : FieldGroup::FileCounts);
    if (isNetworkBackup)
        m_display.bandwidthBgViewIsShown = true;
    else
        m_display.scElapsedTime_Dedup = {m_figures.text(Figure::ElapsedTime), true};
    m_display.scProgressStatus.isShown = false;
    if (const auto percent = percentageIn(data))
        showOlderPercentage(*percent);
    show(Figure::TransferSpeed, m_display.scSpeedText);
    show(Figure::EstimatedTime, m_display.scEstimatedTime.text);
    show(Figure::EstimatedTime, m_display.scEstimatedTime_Dedup);
    show(Figure::RemainingFiles, m_display.scRemainingFiles_Dedup);
    show(Figure::CompletedFiles, m_display.scCompletedFiles_Dedup);
    showFileLine();
}

void CVScheduleProgressViewController::showOlderPause()
{
    CVSingletonForBackup::shared().scheduleBackupRunning = true;
    pauseToResume();
    if (mainController)
        mainController->showScheduledJobPaused();
}

void CVScheduleProgressViewController::showOlderPercentage(qint64 percent)
{
    if (progressStarted && !isDeduplicating() && !SchOnlineBackup)
        m_display.scEstimatedTime.isShown = true;
    m_display.progressBarIsShown = m_display.progressBarIsShown || progressStarted;
    if (progressStarted && percent > 0) {
        showPercent(percent);
    } else {
        m_display.scProgressText.isShown = false;
        m_display.scEstimatedTime.text = calculating;
    }
}

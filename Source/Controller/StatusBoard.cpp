#include "Source/Controller/StatusBoard.h"

#include "Extensions/TextFormat.h"
#include "Platform/Bundle.h"
#include "Platform/KeptFiles.h"
#include "Platform/MainThread.h"
#include "Source/Controller/Account.h"
#include "Source/Controller/ScheduledJobs.h"
#include "Source/Logger/WriteTrace.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <QFileInfo>

using namespace MonitorControllerVC;
using namespace Qt::StringLiterals;
using StatusRules::Picture;

namespace
{
QStringList syncImages(const QString &suffix)
{
    QStringList names;
    for (int frame = 1; frame <= 5; ++frame)
        names.append(u"sync_menubw%1%2"_s.arg(frame).arg(suffix));
    return names;
}

QString appFullName()
{
    return pathValue("ApplicationFullName"_L1);
}
} // namespace

StatusBoard::StatusBoard(Surroundings surroundings, const Account &account, ScheduledJobs &jobs)
    : qnStatusItem(surroundings.item), m_clock(surroundings.clock),
      m_isPanelDark(std::move(surroundings.isPanelDark)), m_lineChanged(std::move(surroundings.lineChanged)),
      m_account(account), m_jobs(jobs)
{
}

void StatusBoard::showItem()
{
    isDarkModeEnabled = m_isPanelDark();
    show(Picture::App); // an item needs an image to be shown
    qnStatusItem.show();
    setButtonToolTip(std::nullopt);
}

void StatusBoard::makeAnimators()
{
    syncMenuAnimator.emplace(qnStatusItem, m_clock, syncImages(QString()));
    syncBWMenuAnimator.emplace(qnStatusItem, m_clock, syncImages(u"_alt"_s));
}

// ---- Icon --------------------------------------------------------------------------------------------------

void StatusBoard::setStatusMenuIconForState(MenuIcons state)
{
    onMainThread([this, state] { setStatusMenuIconForStateThreadCheck(state); });
}

void StatusBoard::setStatusMenuIconForStateThreadCheck(MenuIcons state)
{
    switch (state) {
    case MenuIcons::normal:
        return evaluateNormalIcon(PausedTip::Show);
    case MenuIcons::none:
        return;
    case MenuIcons::paused:
        if (!syncAnimationRuns()) // a sync line that works owns the icon
            show(Picture::Pause);
        return;
    case MenuIcons::upgrade:
        if (evaluateQuotaWarning() && !syncAnimationRuns())
            show(Picture::Upgrade);
        return;
    case MenuIcons::syncActive:
        return evaluateSyncActivity();
    case MenuIcons::syncStopped:
        stopSyncAnimation();
        isMenuIconForSyncAnimating = false;
        return evaluateNormalIcon(PausedTip::Show);
    }
}

void StatusBoard::evaluateNormalIcon(PausedTip pausedTip)
{
    const StatusRules::NormalIcon icon = StatusRules::normalIcon({
        .syncLine = syncDaemonTooltip,
        .hasAnimators = syncMenuAnimator.has_value() || syncBWMenuAnimator.has_value(),
        .syncEnabled = mIsSyncEnabled,
        .syncAnimationRuns = syncAnimationRuns(),
        .jobPaused = m_jobs.isRunningJobPaused(),
    });
    if (icon.stopAnimation)
        stopSyncAnimation();
    if (icon.clearAnimatingFlag)
        isMenuIconForSyncAnimating = false;
    show(icon.picture);
    if (icon.showPausedTip && pausedTip == PausedTip::Show) {
        corvaneDaemonTooltip = scheduleJobPausedTooltip;
        showMergedToolTip(std::nullopt);
    }
}

bool StatusBoard::evaluateQuotaWarning() const
{
    const QString user = m_account.signedInUser();
    return StatusRules::mayPromptUpgrade(StatusRules::isQuotaAtLimit(UserRecords::getQuotaDetails(user)),
                                         m_account.planNeverWarns(), UserRecords::accountType(user),
                                         QNUtility::isCurrentPlanPartner());
}

void StatusBoard::evaluateSyncActivity()
{
    switch (StatusRules::syncActivity(syncDaemonTooltip, mIsSyncEnabled, isMenuIconForSyncAnimating)) {
    case StatusRules::SyncActivity::Nothing:
        return;
    case StatusRules::SyncActivity::Settle:
        syncIsStopped = true;
        setStatusMenuIconForState(MenuIcons::normal);
        return;
    case StatusRules::SyncActivity::Animate:
        isMenuIconForSyncAnimating = true;
        auto &chosen = panelIsLight() ? syncMenuAnimator : syncBWMenuAnimator;
        auto &other = panelIsLight() ? syncBWMenuAnimator : syncMenuAnimator;
        if (other)
            other->stopAnimation();
        if (chosen)
            chosen->startAnimation();
        syncIsStopped = false;
        return;
    }
}

void StatusBoard::stopSyncAnimation()
{
    for (auto *animator : {&syncMenuAnimator, &syncBWMenuAnimator}) {
        if (*animator)
            (*animator)->stopAnimation();
    }
}

bool StatusBoard::syncAnimationRuns() const
{
    return (syncMenuAnimator && syncMenuAnimator->isAnimating()) ||
           (syncBWMenuAnimator && syncBWMenuAnimator->isAnimating());
}

void StatusBoard::show(Picture picture)
{
    switch (picture) {
    case Picture::Keep:
        return;
    case Picture::App:
        return showImageOfKey("BlackAndWhiteAppIcon"_L1);
    case Picture::Pause:
        return showImageOfKey("BlackAndWhitePauseMenuIcon"_L1);
    case Picture::Upgrade:
        return showImageOfKey("BlackAndWhiteUpgradeMenuIcon"_L1);
    }
}

void StatusBoard::showImageOfKey(QLatin1StringView key)
{
    const QString name = panelIsLight() ? QString(key) : key + u"_alt"_s;
    qnStatusItem.setImage(pathValue(QLatin1StringView(name.toLatin1())));
}

void StatusBoard::darkModeChanged()
{
    isDarkModeEnabled = m_isPanelDark();
    QString name = qnStatusItem.imageName();
    if (name.endsWith("_alt"_L1))
        name.chop(4);
    qnStatusItem.setImage(panelIsLight() ? name : name + u"_alt"_s);
    if (syncAnimationRuns()) { // goes on with the frames of the new appearance
        isMenuIconForSyncAnimating = false;
        setStatusMenuIconForState(MenuIcons::syncActive);
    }
}

// ---- Tool tip ----------------------------------------------------------------------------------------------

void StatusBoard::setStatusMenuToolTip(const std::optional<QString> &message,
                                       const std::optional<QString> &syncMessage)
{
    onMainThread([this, message, syncMessage] { setMenuToolTip(message, syncMessage); });
}

void StatusBoard::setMenuToolTip(const std::optional<QString> &message,
                                 const std::optional<QString> &syncMessage)
{
    if (message)
        corvaneDaemonTooltip = message;
    const bool saysSomething = syncMessage && !syncMessage->isEmpty();
    if (saysSomething || (syncDaemonTooltip == pausedTooltip.text() && !syncDaemonPreviousToolTip))
        handleSyncMessage(syncMessage, loggedSyncDetails());
    showMergedToolTip(syncMessage);
}

void StatusBoard::showMergedToolTip(const std::optional<QString> &syncMessage)
{
    auto text = constructTooltipMessage(syncMessage);
    if (text)
        text = StatusRules::withSyncedWording(*text);
    setButtonToolTip(text);
}

std::optional<QString> StatusBoard::constructTooltipMessage(const std::optional<QString> &syncMessage)
{
    const QString syncTip = syncDaemonTooltip.value_or(QString());
    const bool signedIn = m_account.isSignedIn();
    switch (StatusRules::toolTipKind({
        .backupTip = corvaneDaemonTooltip,
        .syncMessage = syncMessage,
        .syncTip = signedIn ? syncDaemonTooltip : std::nullopt,
        .syncEnabled = signedIn && mIsSyncEnabled,
        .movingFolder = isMovingFolderLocation,
        .quotaFull = isSyncQuotaFull,
        .appFullName = appFullName(),
    })) {
    case StatusRules::ToolTipKind::None:
        return std::nullopt;
    case StatusRules::ToolTipKind::BackupTip:
        return corvaneDaemonTooltip;
    case StatusRules::ToolTipKind::SyncMessage:
        return syncMessage;
    case StatusRules::ToolTipKind::QuotaFull:
        return StatusRules::quotaFullLines(corvaneDaemonTooltip, syncTip, appFullName());
    case StatusRules::ToolTipKind::SchedulerStatus:
        return handleSchedulerStatusCase(syncTip);
    case StatusRules::ToolTipKind::Both:
        return handleNormalTooltipCase(syncTip);
    }
    return std::nullopt;
}

QString StatusBoard::handleNormalTooltipCase(const QString &syncTip) const
{
    if (syncTip != syncAccCancelTooltip.text())
        return StatusRules::bothLines(corvaneDaemonTooltip, syncTip);
    const QString marker = accountPath(pathValue("CancelledAccountInfoPath"_L1), {m_account.signedInUser()});
    // A marker is its mere existence; the file may be a list that the main application filled, so it is not
    // replaced.
    if (!QFileInfo::exists(marker))
        writeOrTrace(marker, {});
    return formatted(accountCancelledTooltip, {appFullName()});
}

QString StatusBoard::handleSchedulerStatusCase(const QString &syncTip)
{
    if (m_jobs.switchFile() == ScheduleSwitch::Disabled)
        corvaneDaemonTooltip = disableScheduledJobsTooltip;
    else
        corvaneDaemonTooltip = m_jobs.nextJobLine();
    return StatusRules::bothLines(corvaneDaemonTooltip, syncTip);
}

void StatusBoard::setButtonToolTip(const std::optional<QString> &text)
{
    m_reportTip.reset();
    const QString tip = StatusRules::buttonToolTip(appFullName(), Bundle::main().shortVersion(), text);
    if (tip == qnStatusItem.toolTip())
        return;
    m_lineChanged();
    qnStatusItem.setToolTip(tip);
}

void StatusBoard::checkAndDisplayScheduleToolTip()
{
    setStatusMenuToolTip(m_jobs.backupLine(), std::nullopt);
}

void StatusBoard::showReportTip(ReportRules::Tip tip)
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

void StatusBoard::dropBackupLine()
{
    corvaneDaemonTooltip = QString();
    setButtonToolTip(QString());
}

// ---- Jobs and accounts -------------------------------------------------------------------------------------

void StatusBoard::paused()
{
    setStatusMenuIconForState(MenuIcons::paused);
    setStatusMenuToolTip(scheduleJobPausedTooltip.text(), syncDaemonTooltip);
}

void StatusBoard::resumed()
{
    putNormalIconRight();
    setStatusMenuToolTip(m_jobs.isBackupInProgress() ? backupProgressTooltip.text() : localized(appFullName()),
                         syncDaemonTooltip);
}

void StatusBoard::signedOut()
{
    mIsSyncEnabled = false;
    forgetSyncLines();
    isMovingFolderLocation = false;
    stopSyncAnimation();
    showRunningJobOnly();
}

void StatusBoard::showRunningJobOnly()
{
    putNormalIconRight();
    if (!m_jobs.isJobRunning()) {
        corvaneDaemonTooltip = appFullName();
        setButtonToolTip(std::nullopt);
        return;
    }
    const LocalizedText &tip = m_jobs.isRunningJobPaused() ? scheduleJobPausedTooltip : backupProgressTooltip;
    setStatusMenuToolTip(tip.text(), std::nullopt);
}

// ---- Sync --------------------------------------------------------------------------------------------------

QVariantMap StatusBoard::loggedSyncDetails() const
{
    const QString path = accountPath(pathValue("LoggedSyncDetailsUserPath"_L1), {m_account.signedInUser()});
    return KeptFiles::dictionary(path, Limits::SharedListBytes).value_or(QVariantMap());
}

bool StatusBoard::syncRests() const
{
    return !mIsSyncEnabled || StatusRules::isRestingSyncLine(syncDaemonTooltip.value_or(QString()));
}

StatusBoard::SyncLine StatusBoard::takeSyncLine(const QString &text)
{
    const QVariantMap list = loggedSyncDetails();
    const bool isPaused = StatusRules::flagValue(list.value(u"Pause"_s)).value_or(false);
    const QString line = isPaused ? pausedTooltip.text() : StatusRules::syncLine(text);
    if (isPaused && mIsSyncEnabled)
        syncDaemonTooltip = line;
    handleSyncMessage(line, list);
    showMergedToolTip(line);
    if (!isPaused) {
        syncDaemonTooltip = mIsSyncEnabled ? std::optional(line) : std::nullopt;
        if (mIsSyncEnabled)
            syncIsStopped = StatusRules::isRestingSyncLine(line);
    }
    if (!isPaused || !mIsSyncEnabled)
        isMenuIconForSyncAnimating = false; // the next working line starts the animation anew
    return {.isPaused = isPaused, .shown = mIsSyncEnabled ? std::optional(line) : std::nullopt};
}

void StatusBoard::handleSyncMessage(const std::optional<QString> &syncMessage, const QVariantMap &list)
{
    const StatusRules::SyncLineOutcome outcome = StatusRules::takeSyncLine({
        .message = syncMessage,
        .paused = StatusRules::flagValue(list.value(u"Pause"_s)),
        .reinitialising = StatusRules::flagValue(list.value(u"Re-initialize"_s)),
        .lines = {syncDaemonTooltip, syncDaemonPreviousToolTip},
    });
    syncDaemonTooltip = outcome.lines.current;
    syncDaemonPreviousToolTip = outcome.lines.previous;
    if (outcome.storeMessage)
        writeTextOrTrace(pathValue("SyncStatusMessagePath"_L1, {m_account.signedInUser()}), *syncMessage);
    if (outcome.evaluateIcon)
        setStatusMenuIconForState(MenuIcons::syncActive);
}

void StatusBoard::forgetSyncLines()
{
    syncDaemonPreviousToolTip.reset();
    syncDaemonTooltip.reset();
    isSyncQuotaFull = false;
    isMenuIconForSyncAnimating = false;
}

void StatusBoard::takeStoredSyncState(bool isPaused)
{
    if (isPaused) {
        syncDaemonTooltip = pausedTooltip;
        syncDaemonPreviousToolTip = allFilesUpToDateTooltip;
    }
    setStatusMenuToolTip(corvaneDaemonTooltip, allFilesUpToDateTooltip.text());
}

void StatusBoard::setSyncQuotaFull(bool isFull)
{
    isSyncQuotaFull = isFull;
    setStatusMenuToolTip(corvaneDaemonTooltip, syncDaemonTooltip);
}

void StatusBoard::moveStartedToolTipMessage()
{
    isMovingFolderLocation = true;
    setStatusMenuToolTip(corvaneDaemonTooltip, movingTooltip.text());
}

void StatusBoard::moveCompletedToolTipMessage()
{
    isMovingFolderLocation = false;
    setStatusMenuToolTip(corvaneDaemonTooltip, processingTooltip.text());
}

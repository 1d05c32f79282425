// Icon and tool tip. Two sources feed them: the backup side (a job, the schedule, the quota) and the sync side
// (the sync daemon's status line). Nothing of the answer is stored; each call derives it anew from files and
// fields, by the rules in StatusRules. Three things must hold: a sync line is taken before the text is put
// together, the line is kept before the icon is asked for, and the icon never waits for the text.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Extensions/TextFormat.h"
#include "Platform/AtomicFile.h"
#include "Platform/Bundle.h"
#include "Platform/GlobalDomain.h"
#include "Platform/Home.h"
#include "Platform/MainThread.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <QFileInfo>

#include <tuple>

using namespace MonitorControllerVC;
using StatusRules::Picture;

void CorvaneMonitorController::setStatusMenuIconForState(MenuIcons state)
{
    onMainThread([this, state] { setStatusMenuIconForStateThreadCheck(state); });
}

void CorvaneMonitorController::setStatusMenuIconForStateThreadCheck(MenuIcons state)
{
    switch (state) {
    case MenuIcons::normal:
        return evaluateNormalIcon();
    case MenuIcons::none:
        return;
    case MenuIcons::paused:
        if (!syncStateEntry()) // where sync is on, its line owns the icon
            show(Picture::Pause);
        return;
    case MenuIcons::upgrade:
        return evaluateUpgradeIcon();
    case MenuIcons::syncActive:
        return evaluateSyncActivity();
    case MenuIcons::syncStopped:
        stopSyncAnimation();
        isMenuIconForSyncAnimating = false;
        return evaluateNormalIcon();
    }
}

void CorvaneMonitorController::evaluateNormalIcon()
{
    const bool jobPaused = isScheduledBackupPaused();
    std::ignore = evaluateQuotaWarning();
    const StatusRules::NormalIcon icon = StatusRules::normalIcon({
        .syncLine = syncDaemonTooltip,
        .previousSyncLine = syncDaemonPreviousToolTip,
        .hasAnimators = syncMenuAnimator.has_value() || syncBWMenuAnimator.has_value(),
        .syncEnabled = mIsSyncEnabled.value_or(false),
        .syncEntryOn = syncStateEntry(),
        .syncAnimationRuns = syncAnimationRuns(),
        .scheduledPauseTest = jobPaused || switchFile() == ScheduleSwitch::JobPaused,
        .scheduledBackupPaused = jobPaused,
    });
    if (icon.stopAnimation)
        stopSyncAnimation();
    if (icon.clearAnimatingFlag)
        isMenuIconForSyncAnimating = false;
    show(icon.picture);
    if (icon.showPausedTip)
        setButtonToolTip(scheduleJobPausedTooltip);
}

void CorvaneMonitorController::evaluateUpgradeIcon()
{
    if (!evaluateQuotaWarning() || syncAnimationRuns())
        return;
    show(Picture::Upgrade);
}

/// Works out whether the user is to be warned of a full account; keeps and returns the answer.
bool CorvaneMonitorController::evaluateQuotaWarning()
{
    const QString user = signedInUser();
    shouldPromptExceededWarning = StatusRules::mayPromptUpgrade(
        StatusRules::isQuotaAtLimit(UserRecords::getQuotaDetails(user)), mIsBusinessUser,
        UserRecords::accountType(user), QNUtility::isCurrentPlanPartner());
    return shouldPromptExceededWarning;
}

void CorvaneMonitorController::evaluateSyncActivity()
{
    switch (StatusRules::syncActivity(syncDaemonTooltip, mIsSyncEnabled.value_or(false),
                                      isMenuIconForSyncAnimating)) {
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

void CorvaneMonitorController::stopSyncAnimation()
{
    for (auto *animator : {&syncMenuAnimator, &syncBWMenuAnimator}) {
        if (*animator)
            (*animator)->stopAnimation();
    }
}

bool CorvaneMonitorController::syncAnimationRuns() const
{
    return (syncMenuAnimator && syncMenuAnimator->isAnimating()) ||
           (syncBWMenuAnimator && syncBWMenuAnimator->isAnimating());
}

void CorvaneMonitorController::show(Picture picture)
{
    switch (picture) {
    case Picture::Keep:
        return;
    case Picture::App:
        return showImageOfKey(QLatin1String("BlackAndWhiteAppIcon"));
    case Picture::Pause:
        return showImageOfKey(QLatin1String("BlackAndWhitePauseMenuIcon"));
    case Picture::Upgrade:
        return showImageOfKey(QLatin1String("BlackAndWhiteUpgradeMenuIcon"));
    }
}

void CorvaneMonitorController::showImageOfKey(QLatin1String key)
{
    const QString name = panelIsLight() ? QString(key) : key + QStringLiteral("_alt");
    qnStatusItem.setImage(pathValue(QLatin1String(name.toLatin1())));
}

bool CorvaneMonitorController::applicationIsOnTheDarkSide() const
{
    const auto style = GlobalDomain(QNUtility::globalPreferencesPath()).interfaceStyle();
    return style ? *style == u"Dark" : m_desktop.isDark();
}

bool CorvaneMonitorController::windowsAreOnTheDarkSide() const
{
    const auto style = GlobalDomain(QNUtility::globalPreferencesPath()).interfaceStyle();
    return style ? *style == u"Dark" : m_desktop.isDesktopDark();
}

void CorvaneMonitorController::windowLookChanged()
{
    m_progressWindow.refreshColours();
    m_desktop.refreshWindowColours();
}

void CorvaneMonitorController::darkModeChanged()
{
    isDarkModeEnabled = applicationIsOnTheDarkSide();
    windowLookChanged();
    QString name = qnStatusItem.imageName();
    if (name.endsWith(QLatin1String("_alt")))
        name.chop(4);
    qnStatusItem.setImage(panelIsLight() ? name : name + QStringLiteral("_alt"));
    if (syncAnimationRuns()) { // goes on with the frames of the new appearance
        isMenuIconForSyncAnimating = false;
        setStatusMenuIconForState(MenuIcons::syncActive);
    }
}

bool CorvaneMonitorController::syncStateEntry() const
{
    const auto states = PropertyList::readDictionary(pathValue(QLatin1String("SyncStateFilePath"), {}));
    return states && PropertyList::boolValue(*states, signedInUser().toLower()).value_or(false);
}

void CorvaneMonitorController::setStatusMenuToolTip(const std::optional<QString> &message,
                                                    const std::optional<QString> &syncMessage)
{
    onMainThread([this, message, syncMessage] { setMenuToolTip(message, syncMessage); });
}

void CorvaneMonitorController::setMenuToolTip(const std::optional<QString> &message,
                                              const std::optional<QString> &syncMessage)
{
    m_reportTip.reset();
    if (message)
        corvaneDaemonTooltip = message;
    handleSyncMessage(syncMessage);
    auto text = constructTooltipMessage(syncMessage);
    if (text)
        text = StatusRules::withSyncedWording(*text);
    setButtonToolTip(text);
}

void CorvaneMonitorController::handleSyncMessage(const std::optional<QString> &syncMessage)
{
    const QString user = signedInUser();
    const QString listPath = standardizedPath(formatted(loggedSyncDetailsUserPath, {user}));
    const QVariantMap list = PropertyList::readDictionary(listPath).value_or(QVariantMap());
    const StatusRules::SyncLineOutcome outcome = StatusRules::takeSyncLine({
        .message = syncMessage,
        .paused = StatusRules::flagValue(list.value(QStringLiteral("Pause"))),
        .reinitialising = StatusRules::flagValue(list.value(QStringLiteral("Re-initialize"))),
        .lines = {syncDaemonTooltip, syncDaemonPreviousToolTip},
    });
    syncDaemonTooltip = outcome.lines.current;
    syncDaemonPreviousToolTip = outcome.lines.previous;
    if (outcome.storeMessage) {
        const QString path = pathValue(QLatin1String("SyncStatusMessagePath"), {user});
        if (!AtomicFile::writeText(path, *syncMessage))
            QNLogger::logMonitorTrace(QStringLiteral("The sync status line could not be written to ") + path);
    }
    if (outcome.evaluateIcon)
        setStatusMenuIconForState(MenuIcons::syncActive);
}

std::optional<QString>
CorvaneMonitorController::constructTooltipMessage(const std::optional<QString> &syncMessage)
{
    const QString syncTip = syncDaemonTooltip.value_or(QString());
    switch (StatusRules::toolTipKind({
        .backupTip = corvaneDaemonTooltip,
        .syncMessage = syncMessage,
        .syncTip = syncDaemonTooltip,
        .syncEnabled = mIsSyncEnabled.value_or(false),
        .movingFolder = isMovingFolderLocation,
        .quotaFull = isSyncQuotaFull,
        .appFullName = appFullName,
    })) {
    case StatusRules::ToolTipKind::None:
        return std::nullopt;
    case StatusRules::ToolTipKind::BackupTip:
        return corvaneDaemonTooltip;
    case StatusRules::ToolTipKind::SyncMessage:
        return syncMessage;
    case StatusRules::ToolTipKind::QuotaFull:
        return StatusRules::quotaFullLines(corvaneDaemonTooltip, syncTip, appFullName);
    case StatusRules::ToolTipKind::SchedulerStatus:
        return handleSchedulerStatusCase(syncTip);
    case StatusRules::ToolTipKind::Both:
        return handleNormalTooltipCase(syncTip);
    }
    return std::nullopt;
}

QString CorvaneMonitorController::handleNormalTooltipCase(const QString &syncTip)
{
    if (syncTip != syncAccCancelTooltip.text())
        return StatusRules::bothLines(corvaneDaemonTooltip, syncTip);
    const QString marker = standardizedPath(formatted(cancelledAccountInfoPath, {signedInUser()}));
    // A marker is its mere existence; the file may be a list that the main application filled, so it is not
    // replaced.
    if (!QFileInfo::exists(marker))
        std::ignore = AtomicFile::write(marker, {});
    return formatted(accountCancelledTooltip, {appFullName});
}

QString CorvaneMonitorController::handleSchedulerStatusCase(const QString &syncTip)
{
    if (switchFile() == ScheduleSwitch::Disabled)
        corvaneDaemonTooltip = disableScheduledJobsTooltip;
    else
        updateSchedulerStatus();
    return StatusRules::bothLines(corvaneDaemonTooltip, syncTip);
}

QString CorvaneMonitorController::applicationNameWithVersion() const
{
    return StatusRules::buttonToolTip(pathValue(QLatin1String("ApplicationFullName")),
                                      Bundle::main().shortVersion(), std::nullopt);
}

void CorvaneMonitorController::setButtonToolTip(const std::optional<QString> &text)
{
    const QString tip = StatusRules::buttonToolTip(pathValue(QLatin1String("ApplicationFullName")),
                                                   Bundle::main().shortVersion(), text);
    if (tip != qnStatusItem.toolTip())
        refreshMenuSoon(); // it has a line of the tool tip, and what changed that has changed more
    qnStatusItem.setToolTip(tip);
}

void CorvaneMonitorController::moveStartedToolTipMessage()
{
    isMovingFolderLocation = true;
    setStatusMenuToolTip(corvaneDaemonTooltip, movingTooltip.text());
}

void CorvaneMonitorController::moveCompletedToolTipMessage()
{
    isMovingFolderLocation = false;
    setStatusMenuToolTip(corvaneDaemonTooltip, processingTooltip.text());
}

// The pass that runs every 10 seconds and brings icon and tool tip in line with the files, whatever message was
// missed.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Platform/PropertyList.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Paths/PathTable.h"

using namespace MonitorControllerVC;

namespace
{
constexpr Clock::Duration BlinkPeriod{500};
}

void CorvaneMonitorController::checkForTotalQuota()
{
    refreshMenu();
    const auto record = UserRecords::getActiveUserDetails();
    const auto username = record ? PropertyList::textValue(*record, QStringLiteral("Username")) : std::nullopt;
    if (!username)
        return;
    const QVariantMap details = UserRecords::getQuotaDetails(userNameOfDetails());
    const auto total = PropertyList::textValue(details, QStringLiteral("TOTALQUOTASIZE"));
    const auto used = PropertyList::textValue(details, QStringLiteral("USEDQUOTASIZE"));
    if (!total || !used)
        return;
    if (StatusRules::isQuotaAtLimit(details))
        evaluateAtLimit(*username);
    else
        evaluateWithinLimit(*username);
}

void CorvaneMonitorController::evaluateAtLimit(const QString &username)
{
    if (!mIsBusinessUser && !mIsPersonalUser) {
        if (isMonitorClickedAfterQuotaExceed)
            setStatusMenuIconForState(MenuIcons::upgrade);
        else if (!blinkingTimer)
            blinkingTimer =
                m_clock.start(BlinkPeriod, Clock::Repeat::Forever, [this] { blinkStatusImageOnQuotaExceed(); });
    }
    if (UserRecords::accountType(username) == QStringLiteral("false"))
        setStatusMenuToolTip(quotaExceededTooltip.text(), std::nullopt);
    else
        checkAndDisplayScheduleToolTip();
}

void CorvaneMonitorController::evaluateWithinLimit(const QString &username)
{
    blinkingTimer.reset();
    const bool syncRests =
        !mIsSyncEnabled.value_or(false) ||
        (syncDaemonTooltip && StatusRules::isFinalForQuotaPass(*syncDaemonTooltip, syncDaemonPreviousToolTip));
    if (syncRests)
        setStatusMenuIconForState(MenuIcons::normal);

    if (UserRecords::isAnyInteractiveBackupOperationRunning(username)) {
        const LocalizedText &tip = isBackupJobPaused() ? intBackupPausedTooltip : intBackupProgressTooltip;
        setStatusMenuToolTip(tip.text(), syncDaemonTooltip);
    } else {
        checkAndDisplayScheduleToolTip();
    }
}

void CorvaneMonitorController::blinkStatusImageOnQuotaExceed()
{
    setStatusMenuIconForState(MenuIcons::upgrade);
}

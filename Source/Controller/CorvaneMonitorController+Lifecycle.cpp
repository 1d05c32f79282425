// The start of the program. Each step may rely on all that stand above it; the channel comes last, so that the
// first message finds everything in place.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Language/AppLanguage.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <QFileInfo>

using namespace MonitorControllerVC;

namespace
{
constexpr Clock::Duration QuotaPeriod{10'000};

QStringList syncImages(const QString &suffix)
{
    QStringList names;
    for (int frame = 1; frame <= 5; ++frame)
        names.append(QStringLiteral("sync_menubw%1%2").arg(frame).arg(suffix));
    return names;
}
} // namespace

CorvaneMonitorController::CorvaneMonitorController(Surroundings surroundings)
    : qnStatusItem(surroundings.statusItem), m_clock(surroundings.clock),
      m_isDesktopDark(std::move(surroundings.isDesktopDark))
{
    schedulerController.mainController = this;
}

CorvaneMonitorController::~CorvaneMonitorController() = default;

void CorvaneMonitorController::awakeFromNib()
{
    LanguageManager::shared().setInitialAppLanguage(SystemLanguageHelper::getSystemPrimaryLanguageCode());
    CVAppLocalization::shared().loadlocalizedLanguage();
    QNLogger::logMonitorTrace(QStringLiteral("Start of awakeFromNib"));

    cancelledAccountInfoPath = pathValue(QLatin1String("CancelledAccountInfoPath"));
    schedulerStatusInfoPath = pathValue(QLatin1String("SchedulerStatusInfoPath"), {});
    loggedSyncDetailsUserPath = pathValue(QLatin1String("LoggedSyncDetailsUserPath"));
    appFullName = pathValue(QLatin1String("ApplicationFullName"));

    isDarkModeEnabled = applicationIsOnTheDarkSide();
    takeUserRecord();
    // Finds the account whose markers the icon asks for. Where no job runs that is nobody, which is not the
    // same as not yet known: reports are dropped unseen only before this.
    if (!schedulerController.isScheduleBackupInProgress() && !schedulerController.currentscheduleuser)
        schedulerController.currentscheduleuser = QString();
    setStatusMenuIconForState(MenuIcons::normal);
    showFirstToolTip();

    loggedInProfile = ::consoleUser();
    mIsSyncEnabled = syncStateEntry() ? std::optional(true) : std::nullopt;
    syncMenuAnimator.emplace(qnStatusItem, m_clock, syncImages(QString()));
    syncBWMenuAnimator.emplace(qnStatusItem, m_clock, syncImages(QStringLiteral("_alt")));
    m_quotaTimer = m_clock.start(QuotaPeriod, Clock::Repeat::Forever, [this] { checkForTotalQuota(); });

    mTCPWithDaemon = std::make_unique<DaemonChannel>(*this, m_clock, [this] { return daemonPort(); });
    mTCPWithDaemon->start();
}

void CorvaneMonitorController::takeUserRecord()
{
    const auto record = UserRecords::getActiveUserDetails();
    userNotLoggedIn = !QFileInfo::exists(pathValue(QLatin1String("LastUserLoginDetailsFilePath"), {}));
    mUserDetails = record.value_or(QVariantMap());
    m_lastLoggedInUser = UserRecords::getLastLoggedInUser();
    if (!m_lastLoggedInUser || m_lastLoggedInUser->isEmpty()) {
        const auto linked = QNUtility::isAnyUserDeletedForProfile(::consoleUser().value_or(QString()));
        m_lastLoggedInUser = linked ? PropertyList::textValue(*linked, QStringLiteral("cname")) : std::nullopt;
    }
    getPlanForUser();
}

void CorvaneMonitorController::showFirstToolTip()
{
    const QString user = signedInUser();
    if (user.isEmpty())
        setButtonToolTip(std::nullopt);
    else if (UserRecords::isAnyInteractiveBackupOperationRunning(user))
        checkForTotalQuota();
    else if (!schedulerController.isScheduleBackupInProgress())
        checkAndDisplayScheduleToolTip();
    else if (!isScheduledBackupPaused()) // the icon's evaluation has said so where it is
        setStatusMenuToolTip(backupProgressTooltip.text(), std::nullopt);
}

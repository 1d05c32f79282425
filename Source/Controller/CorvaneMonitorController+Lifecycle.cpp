// The start of the program. Each step may rely on all that stand above it; the channel comes last, so that the
// first message finds everything in place.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Platform/AtomicFile.h"
#include "Platform/Bundle.h"
#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/InterfaceTraceWriters.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Language/AppLanguage.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Language/SchedulerProgressVC.h"
#include "Utility/LaunchRules.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <QFileInfo>

using namespace std::chrono_literals;
using namespace MonitorControllerVC;
using SchedulerProgressVC::noButton;
using SchedulerProgressVC::yesButton;

namespace
{
constexpr Clock::Duration QuotaPeriod = 10s;
constexpr Clock::Duration DailyPeriod = 24h;

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
      m_notifications(surroundings.notifications), m_desktop(std::move(surroundings.desktop)),
      m_menu([this](MenuAction action) { didClick(action); }),
      m_progressWindow(
          {.view = {.clock = m_clock, .confirm = [this](const QString &text) { return confirm(text); }},
           .isDark = [this] { return windowsAreOnTheDarkSide(); }})
{
    schedulerController.mainController = this;
    makePortEar();
}

bool CorvaneMonitorController::confirm(const QString &question) const
{
    return m_desktop.ask({.text = question, .defaultButton = yesButton, .alternateButton = noButton}) ==
           DesktopActions::DefaultButton;
}

CorvaneMonitorController::~CorvaneMonitorController()
{
    dropPortEar();
}

void CorvaneMonitorController::awakeFromNib()
{
    LanguageManager::shared().setInitialAppLanguage(SystemLanguageHelper::getSystemPrimaryLanguageCode());
    CVAppLocalization::shared().loadlocalizedLanguage();
    QNLogger::logMonitorTrace(QStringLiteral("Start of awakeFromNib"));

    cachePaths();
    monitorLaunched = true;
    localizationSetUp();
    m_menu.setWillOpen([this] { menuWillOpen(); });
    QNUtility::removeFile(rootFile(LaunchRules::AutoLaunchCheckFile));
    removeUpdateDMGFolder();
    takeKeyChainState();

    isDarkModeEnabled = applicationIsOnTheDarkSide();
    manageLaunchOnStartup();
    takeUserRecord();
    findRunningJob();
    carryOut(MenuRules::atStart(gatherMenuInputs()));
    if (QAction *remote = m_menu.itemWithTitle(remoteManageTitle))
        remote->setEnabled(true);
    setStatusMenuIconForState(MenuIcons::normal);
    showFirstToolTip();

    startUpdates();
    loggedInProfile = ::consoleUser();
    if (syncStateEntry())
        enableCorvaneSync();
    startDelayedWork();
    redirectLaunch();
    syncMenuAnimator.emplace(qnStatusItem, m_clock, syncImages(QString()));
    syncBWMenuAnimator.emplace(qnStatusItem, m_clock, syncImages(QStringLiteral("_alt")));
    QNLogger::logMonitorTrace(QStringLiteral("OSversionis: ") + QNUtility::macOSVersion());
    announceSilentUpdate();

    registerObservers();
    mTCPWithDaemon = std::make_unique<DaemonChannel>(*this, m_clock, [this] { return daemonPort(); });
    mTCPWithDaemon->start();
    m_observations.push_back(m_notifications.observe(
        QStringLiteral("changeLanguage"),
        [this](const QString &, const QVariantMap &userInfo) { loclaizationSetup(userInfo); }));
    refreshMenu(); // a panel sizes the menu by what stood in it before an opening
}

void CorvaneMonitorController::cachePaths()
{
    cancelledAccountInfoPath = pathValue(QLatin1String("CancelledAccountInfoPath"));
    schedulerStatusInfoPath = pathValue(QLatin1String("SchedulerStatusInfoPath"), {});
    loggedSyncDetailsUserPath = pathValue(QLatin1String("LoggedSyncDetailsUserPath"));
    appFullName = pathValue(QLatin1String("ApplicationFullName"));
}

void CorvaneMonitorController::takeKeyChainState()
{
    const auto state = PropertyList::readDictionary(pathValue(QLatin1String("UnLockStatus"), {}));
    if (state && PropertyList::boolValue(*state, QStringLiteral("status")).value_or(false))
        QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(
            QStringLiteral("Monitor:KEY CHAIN UNLOCK Enabled"), true);
}

void CorvaneMonitorController::takeUserRecord()
{
    userNotLoggedIn = !QFileInfo::exists(pathValue(QLatin1String("LastUserLoginDetailsFilePath"), {}));
    m_lastLoggedInUser = UserRecords::getLastLoggedInUser();
    if (!m_lastLoggedInUser || m_lastLoggedInUser->isEmpty())
        m_lastLoggedInUser = linkedAccount();
    mPreviouslyLoggedInUser = UserRecords::getLastLoggedInUser();
    if (!mPreviouslyLoggedInUser || mPreviouslyLoggedInUser->isEmpty())
        mPreviouslyLoggedInUser = linkedAccount();
    getPlanForUser();
}

void CorvaneMonitorController::findRunningJob()
{
    // Finds the account whose markers the icon asks for. Where no job runs that is nobody, which is not the
    // same as not yet known: reports are dropped unseen only before this.
    if (!schedulerController.isScheduleBackupInProgress() && !schedulerController.currentscheduleuser)
        schedulerController.currentscheduleuser = QString();
}

void CorvaneMonitorController::showFirstToolTip()
{
    if (switchFile() == ScheduleSwitch::JobPaused)
        corvaneDaemonTooltip = backupProgressTooltip;
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

void CorvaneMonitorController::startUpdates()
{
    const QString marker = pathValue(QLatin1String("UpdateOnDaemonRestart"), {});
    if (QFileInfo::exists(marker)) {
        QNLogger::logMonitorTrace(QStringLiteral("AUTOUPDATE:Check File is available"));
        performAutoUpdateWithoutDateCheck();
        QNUtility::removeFile(marker);
    }
    if (!LaunchRules::versionRunsAutomaticUpdates(Bundle::main().version()))
        return;
    QNLogger::logMonitorTrace(QStringLiteral("AUTOUPDATE:24 Hrs check Running"));
    isupdaterunning = false;
    later("automaticUpdate");
    m_updateTimer = m_clock.start(DailyPeriod, Clock::Repeat::Forever, [] { later("automaticUpdate"); });
    QNUtility::removeFile(rootFile(LaunchRules::LaunchHelper));
}

void CorvaneMonitorController::startDelayedWork()
{
    const auto once = [this](Clock::Duration after, std::function<void()> work) {
        m_delayed.push_back(m_clock.start(after, Clock::Repeat::Once, std::move(work)));
    };
    once(1s, [] { later("remoteAccessInstall"); });
    once(5s, [this] { showTrayHelp(); });
    once(15s, [] { later("checkForBackupFailedDays"); });
    once(30s, [] { later("notificationMessageDisplay"); });
    m_notificationTimer =
        m_clock.start(DailyPeriod, Clock::Repeat::Forever, [] { later("notificationMessageDisplay"); });
    m_quotaTimer = m_clock.start(QuotaPeriod, Clock::Repeat::Forever, [this] { checkForTotalQuota(); });
}

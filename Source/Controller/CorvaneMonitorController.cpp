// The start of the program, the passes, the desktop, and the roles. Each step of the start may rely on all that
// stand above it; the channel comes last, so that the first message finds everything in place.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Messaging/OutboundMessages.h"
#include "Platform/Bundle.h"
#include "Platform/GlobalDomain.h"
#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Source/Controller/Later.h"
#include "Source/Logger/InterfaceTraceWriters.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Language/AppLanguage.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Language/SchedulerProgressVC.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/Paths/UserType.h"
#include "Utility/QNUtility.h"

using namespace MonitorControllerVC;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using SchedulerProgressVC::noButton;
using SchedulerProgressVC::yesButton;

CorvaneMonitorController::CorvaneMonitorController(Surroundings surroundings)
    : m_clock(surroundings.clock), m_notifications(surroundings.notifications),
      m_desktop(std::move(surroundings.desktop)),
      m_progressWindow({.view = {.clock = m_clock,
                                 .confirm =
                                     [this](const QString &question) {
                                         return m_desktop.ask({.text = question,
                                                               .defaultButton = yesButton,
                                                               .alternateButton = noButton}) ==
                                                DesktopActions::DefaultButton;
                                     }},
                        .isDark = [this] { return windowsAreOnTheDarkSide(); }}),
      m_launcher(m_desktop, m_clock, m_notifications), m_updater(m_clock),
      m_jobs(m_account, m_clock, [this] { return m_progressWindow.viewController().isSchedulePaused(); }),
      m_board({.item = surroundings.statusItem,
               .clock = m_clock,
               .isPanelDark = [this] { return applicationIsOnTheDarkSide(); },
               .lineChanged = [this] { m_menu.refreshMenuSoon(); }},
              m_account, m_jobs),
      m_notes(m_board),
      m_menu(m_clock,
             {.isVisible = [this] { return m_progressWindow.isWindowVisible(); },
              .close = [this] { m_progressWindow.close(); }},
             m_account, m_jobs, m_board, m_notes, [this](MenuAction action) { didClick(action); }),
      m_reports(m_progressWindow, {m_account, m_jobs, m_board, m_menu, m_launcher}),
      m_logs({.clock = m_clock,
              .publicWebHost = deploymentValue(u"PublicWebHost"_s).value_or(QString()),
              .isDark = [this] { return windowsAreOnTheDarkSide(); },
              .inProgressLogsWereRemoved = [this] { pingAgain(); }},
             {m_account, m_launcher, m_updater, m_desktop}),
      m_sync({m_account, m_board, m_notes, m_menu, m_notifications},
             [this](const QVariantList &array) { dispatch(array, Origin::SyncDaemon); }),
      m_quota(m_clock, m_account, m_jobs, m_board), m_daemon(*this, m_clock, std::move(surroundings.peers))
{
    scheduler().mainController = this;
    m_progressWindow.viewController().mainController = this;
}

// ---- Start -------------------------------------------------------------------------------------------------

void CorvaneMonitorController::awakeFromNib()
{
    LanguageManager::shared().setInitialAppLanguage(SystemLanguageHelper::getSystemPrimaryLanguageCode());
    CVAppLocalization::shared().loadlocalizedLanguage();
    QNLogger::logMonitorTrace(u"Start of awakeFromNib"_s);

    monitorLaunched = true;
    m_menu.localizationSetUp();
    menu().setWillOpen([this] { menuWillOpen(); });
    QNUtility::removeFile(LaunchRules::rootFile(LaunchRules::AutoLaunchCheckFile));
    Launcher::removeUpdateDMGFolder();
    later("saveClientIdentity");
    takeKeyChainState();

    manageLaunchOnStartup();
    m_account.takeUserRecord();
    m_jobs.findRunningJob();
    m_board.showItem(); // before anything that could ask a question
    m_menu.showStart();
    m_board.setStatusMenuIconForState(MenuIcons::normal);
    later("setWebManagementState");
    showFirstToolTip();

    m_updater.start();
    m_sync.start();
    startDelayedWork();
    const auto redirection = Launcher::redirectLaunch();
    if (redirection && redirection != LaunchRules::Redirection::ActivityLogs)
        follow(*redirection);
    m_board.makeAnimators();
    QNLogger::logMonitorTrace(u"OSversionis: "_s + QNUtility::macOSVersion());
    later("displayHandleofCDP");
    later("checkWebmanagementState");
    m_launcher.announceSilentUpdate();
    m_logs.start();
    if (redirection == LaunchRules::Redirection::ActivityLogs)
        follow(*redirection);

    registerObservers();
    m_daemon.start();
    m_observations.push_back(
        m_notifications.observe(u"changeLanguage"_s, [this](const QString &, const QVariantMap &userInfo) {
            loclaizationSetup(userInfo);
        }));
    m_logs.shouldShowLogView();
    m_menu.refreshMenu(); // a panel sizes the menu by what stood in it before an opening
}

void CorvaneMonitorController::takeKeyChainState()
{
    const auto state = PropertyList::readDictionary(pathValue("UnLockStatus"_L1, {}));
    if (!state || !PropertyList::boolValue(*state, u"status"_s).value_or(false))
        return;
    later("setKeyChainUnlockEnabled");
    QNBackupProgressLogger::progressLogger().logAppInterfaceTrace(u"Monitor:KEY CHAIN UNLOCK Enabled"_s, true);
}

void CorvaneMonitorController::showFirstToolTip()
{
    const QString user = m_account.signedInUser();
    const bool jobRuns = m_jobs.isJobRunning();
    if (jobRuns && !m_jobs.isRunningJobPaused()) // the icon's evaluation has said so where it is paused
        m_board.setStatusMenuToolTip(backupProgressTooltip.text(), std::nullopt);
    if (user.isEmpty())
        return;
    if (UserRecords::isAnyInteractiveBackupOperationRunning(user))
        checkForTotalQuota();
    else if (!jobRuns)
        m_board.checkAndDisplayScheduleToolTip();
}

void CorvaneMonitorController::startDelayedWork()
{
    const auto once = [this](Clock::Duration after, std::function<void()> work) {
        m_delayed.push_back(m_clock.start(after, Clock::Repeat::Once, std::move(work)));
    };
    once(1s, [] { later("remoteAccessInstall"); });
    once(5s, [this] { m_launcher.showTrayHelp(); });
    once(15s, [] { later("checkForBackupFailedDays"); });
    once(30s, [] { later("notificationMessageDisplay"); });
    m_notificationTimer =
        m_clock.start(24h, Clock::Repeat::Forever, [] { later("notificationMessageDisplay"); });
    m_quotaTimer = m_clock.start(10s, Clock::Repeat::Forever, [this] {
        checkForTotalQuota();
        m_daemon.look();
    });
}

// ---- Passes ------------------------------------------------------------------------------------------------

void CorvaneMonitorController::checkForTotalQuota()
{
    followRecord();
    m_reports.lookForUnheardChanges();
    m_menu.refreshMenu();
    m_quota.evaluate();
    if (!m_account.isSignedIn())
        return;
    later("displayScheduleDetails");
    later("setWebManagementState");
    later("webManagementQuit");
    later("checkWebmanagementState");
    later("triggerCutOffBackup");
}

void CorvaneMonitorController::menuWillOpen()
{
    m_quota.seen();
    later("updateSyncMenu");
    later("setWebManagementState");
    followRecord();
    m_menu.menuWillOpen();
}

// ---- The desktop -------------------------------------------------------------------------------------------

void CorvaneMonitorController::statusBarDidMove()
{
    if (m_board.hasSyncStopped())
        checkForTotalQuota();
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
    m_logs.refreshColours();
    m_desktop.refreshWindowColours();
}

void CorvaneMonitorController::darkModeChanged()
{
    windowLookChanged();
    m_board.darkModeChanged();
}

void CorvaneMonitorController::displayWindowWithAlertMsg(const QString &text)
{
    m_desktop.showAlert(text);
    isAlertWindowOpen = true;
}

void CorvaneMonitorController::quitApplication()
{
    m_desktop.quit();
}

std::optional<QString> CorvaneMonitorController::deploymentValue(const QString &key)
{
    const auto deployment = PropertyList::readDictionary(Bundle::main().resource(u"Deployment.plist"_s));
    return deployment ? PropertyList::textValue(*deployment, key) : std::nullopt;
}

// ---- Clicks ------------------------------------------------------------------------------------------------

void CorvaneMonitorController::didClick(MenuAction action)
{
    switch (action) {
    case MenuAction::StartApplication:
        return m_launcher.launchApplication();
    case MenuAction::ManageJobs:
        return m_launcher.initiateLaunchCorvaneApp(u"ViewScheduleJobs"_s);
    case MenuAction::OpenSettings:
        return m_launcher.initiateLaunchCorvaneApp(u"Settings"_s);
    case MenuAction::SwitchJobs:
        return disableScheduleSubMenu();
    case MenuAction::OpenHelp:
        return onlinehelp();
    case MenuAction::Quit:
        return quitApplication();
    case MenuAction::OpenProxySettings:
        return openProxySettings();
    case MenuAction::ReportError:
        return showErrorReport();
    case MenuAction::ViewLogs:
        return m_logs.viewSessionLog();
    case MenuAction::PauseOrResumeSync:
        return m_sync.pauseResumeSync();
    case MenuAction::ShowStatus:
        return later("statusBtnClicked");
    case MenuAction::ShowProgress:
        return m_reports.showProgressBtnClicked();
    case MenuAction::PauseOrResumeJob:
        return m_reports.pauseBtnSubMenuActn();
    case MenuAction::StopJob:
        return m_menu.askAfterClick([this] { m_reports.stopBtnSubMenuActn(); });
    case MenuAction::SwitchRemoteManagement:
        return later("disableWebAccessBtnClicked");
    case MenuAction::SwitchProtection:
        return later("cdpBtnClicked");
    case MenuAction::OpenCloudDriveFolder:
        return later("openCloudDriveFolder");
    case MenuAction::AccessWeb:
        return later("AccessFilesFromWeb");
    case MenuAction::UpgradeStorage:
        return later("upgradeStorageforAcc");
    case MenuAction::CheckForUpdate:
        return later("checkForLatestUpdate");
    }
}

void CorvaneMonitorController::disableScheduleSubMenu()
{
    m_menu.disableScheduleSubMenu();
    m_notifications.post(pathValue("updateSchedulerJobStatusFromMonitor"_L1));
    m_board.checkAndDisplayScheduleToolTip();
}

void CorvaneMonitorController::onlinehelp()
{
    const LanguageManager &languages = LanguageManager::shared();
    if (languages.userDefaults().value(languages.languageKey).toList().isEmpty())
        return;
    if (const auto host = deploymentValue(u"PublicWebHost"_s))
        m_desktop.openUrl(QUrl(*host + u"/help/mac-help/default.htm"_s));
}

void CorvaneMonitorController::showErrorReport()
{
    later("showErrorReport");
}

void CorvaneMonitorController::openProxySettings()
{
    later("openProxySettings");
}

// ---- Roles -------------------------------------------------------------------------------------------------

void CorvaneMonitorController::channelDidConnect()
{
    m_logs.daemonDidConnect();
    m_daemon.connected();
}

/// The daemon may be back before the records of the jobs that it runs have gone, and shall write them again.
void CorvaneMonitorController::pingAgain()
{
    if (m_daemon.channel().isConnected())
        m_daemon.channel().send(OutboundMessages::pingFromMonitor(pingDetails()));
}

QVariantMap CorvaneMonitorController::pingDetails()
{
    const QVariantMap record = UserRecords::getActiveUserDetails().value_or(QVariantMap());
    QVariantList inProgress;
    for (const QString &log : m_logs.inProgressOperations())
        inProgress.append(log);
    return OutboundMessages::pingDetails(::consoleUser(), PropertyList::textValue(record, u"Username"_s),
                                         inProgress);
}

void CorvaneMonitorController::channelDidDisconnect()
{
    m_logs.daemonDidDisconnect();
    m_daemon.disconnected();
}

void CorvaneMonitorController::didReceiveProgress(const DaemonMessage &report)
{
    if (m_reports.didReceiveIPCMessageOperationForProgress(report))
        checkForTotalQuota();
}

void CorvaneMonitorController::didReceiveMessage(const QVariantList &message)
{
    didReceiveIPCMessage(message, Origin::BackupDaemon);
}

std::optional<QString> CorvaneMonitorController::lastLoggedInUser() const
{
    return m_account.lastLoggedInUser();
}

std::optional<QString> CorvaneMonitorController::consoleUser() const
{
    return ::consoleUser();
}

std::optional<QString> CorvaneMonitorController::schedulerSettingsFile() const
{
    return pathValue("SchedulerSettingsFile"_L1, {});
}

void CorvaneMonitorController::sendData(const QVariantMap &message, qint64 tag)
{
    m_daemon.channel().sendData(message, tag);
}

void CorvaneMonitorController::sendDataToDaemonForCoreOperation(const std::optional<QVariantMap> &details,
                                                                ECoreOperationActionType action)
{
    const OutboundMessages::CoreOperation operation{
        .profileName = ::consoleUser(),
        .userName = scheduler().currentscheduleuser,
        .isRestore = scheduler().currentScheduleType == QNXScheduleType::restore,
        .isDedup = QNUtility::userType == EUserType::Dedup,
    };
    m_daemon.channel().send(
        OutboundMessages::clientCoreOperation(details.value_or(QVariantMap()), action, operation));
}

void CorvaneMonitorController::showScheduledJobPaused()
{
    m_jobs.forgetFacts();
    m_menu.offerResume();
    m_board.paused();
}

void CorvaneMonitorController::showScheduledJobResumed()
{
    m_jobs.forgetFacts();
    m_menu.offerPause();
    m_board.resumed();
}

void CorvaneMonitorController::scheduledJobHasEnded()
{
    m_jobs.jobHasEnded();
    m_menu.offerPause();
    m_menu.enableDisableManageSubMenus(m_jobs.runningJob());
    m_board.resumed();
    // The daemon may tell of the end before its files do.
    m_passSoon = m_clock.start(1s, Clock::Repeat::Once, [this] { checkForTotalQuota(); });
}

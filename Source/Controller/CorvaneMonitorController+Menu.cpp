// The menu in line with the files. What an item says is decided by MenuRules; here the inputs are gathered,
// each file read once in a pass, and the answers carried out. The passes: at start, at a sign-in, and before
// each opening.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Extensions/TextFormat.h"
#include "Platform/AtomicFile.h"
#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/CVSingletonForBackup.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Paths/ApplicationFilePath.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <tuple>

using namespace MonitorControllerVC;
using namespace std::chrono_literals;

namespace
{
constexpr int ProtectionFile = 26;

std::optional<QString> protectionWordFor(const QString &user, bool *listPresent = nullptr)
{
    const QString path =
        standardizedPath(formatted(ApplicationFilePath(ProtectionFile).path().value_or(QString()), {user}));
    const auto list = PropertyList::readDictionary(path);
    if (listPresent)
        *listPresent = list.has_value();
    return list ? PropertyList::textValue(*list, QStringLiteral("Enabled")) : std::nullopt;
}

/// Whether the account's web management polls: only a login list that names a channel of its own says
/// otherwise.
bool shouldFollowPollingFlow(const QString &user)
{
    const auto details = PropertyList::readDictionary(pathValue(QLatin1String("LoginDetailsFilePath"), {user}));
    const auto channel = details
                             ? PropertyList::textValue(*details, QStringLiteral("remote_manage_websock_server"))
                             : std::nullopt;
    return channel != QStringLiteral("yes");
}
} // namespace

MenuRules::RunningJob CorvaneMonitorController::runningJob()
{
    if (!schedulerController.isScheduleBackupInProgress())
        return MenuRules::RunningJob::None;
    return schedulerController.currentScheduleType == QNXScheduleType::backup ? MenuRules::RunningJob::Backup
                                                                              : MenuRules::RunningJob::Other;
}

/// Takes the user from mUserDetails, which the pass has read.
MenuRules::MenuInputs CorvaneMonitorController::gatherMenuInputs()
{
    const QString user = userNameOfDetails();
    const QString plan = PropertyList::textValue(mUserDetails, QStringLiteral("Plan")).value_or(QString());
    const QVariantMap webManagement =
        PropertyList::readDictionary(pathValue(QLatin1String("WebmanagementFilePath"), {}))
            .value_or(QVariantMap());

    MenuRules::MenuInputs in;
    in.appFullName = appFullName;
    in.recordPresent = QFileInfo::exists(pathValue(QLatin1String("LastUserLoginDetailsFilePath"), {}));
    in.dedup = PropertyList::textValue(mUserDetails, QStringLiteral("dedup"));
    in.accountType = UserRecords::accountType(user);
    in.partnerPlan = plan == u"partner";
    in.engineUser = !user.isEmpty() && UserRecords::isTQLUser(user);
    in.thinClient = QNUtility::isThinClient();
    in.followsPolling = shouldFollowPollingFlow(user);
    in.remote = {.hasUser = !user.isEmpty(),
                 .mobileOnly = plan == u"MobileOnly",
                 .word = PropertyList::textValue(webManagement, user).value_or(QString())};
    in.protectionWord = protectionWordFor(user.isEmpty() ? mPreviouslyLoggedInUser.value_or(user) : user);
    in.switchText = AtomicFile::readText(schedulerStatusInfoPath);
    in.runningJob = runningJob();
    in.operationRuns = UserRecords::isAnyOperationRunning(user);
    in.mainApplicationRuns = mainApplicationRuns();
    in.scheduleBackupRunning = CVSingletonForBackup::shared().scheduleBackupRunning;
    in.progressWindowVisible = m_progressWindow.isWindowVisible();
    in.backupLine = corvaneDaemonTooltip.value_or(QString());
    in.cloudDrive = cloudDriveForMenu(user);
    return in;
}

MenuRules::CloudDrive CorvaneMonitorController::cloudDriveForMenu(const QString &user) const
{
    const QVariantMap list =
        PropertyList::readDictionary(standardizedPath(formatted(loggedSyncDetailsUserPath, {user})))
            .value_or(QVariantMap());
    return {.enabled = mIsSyncEnabled.value_or(false),
            .paused = StatusRules::flagValue(list.value(QStringLiteral("Pause"))),
            .statusLine = syncDaemonTooltip};
}

void CorvaneMonitorController::carryOut(const MenuRules::MenuRefresh &refresh)
{
    m_menu.apply(refresh.items);
    if (refresh.isSubAccount)
        isSubAccount = *refresh.isSubAccount;
    if (refresh.closesProgressWindow)
        m_progressWindow.close();
}

/// What an opening or a sign-in leaves behind in fields that others read; no other pass over the menu touches
/// them.
void CorvaneMonitorController::takeMenuFacts(const MenuRules::MenuInputs &in)
{
    const QString user = userNameOfDetails();
    mPreviouslyLoggedInUser = in.recordPresent && !user.isEmpty() ? std::optional(user) : std::nullopt;
    if (in.recordPresent)
        mSessionLogScheduledBackup.clear();
    QNUtility::userType = in.dedup == QStringLiteral("on") ? EUserType::Dedup : EUserType::Other;
    const auto notices =
        PropertyList::readDictionary(rootFile(user + QStringLiteral("/NotificationDetails.plist")));
    shouldDisplayDesktopNotification =
        !(notices &&
          PropertyList::boolValue(*notices, QStringLiteral("adminNotificationEnableState")).value_or(false));
}

void CorvaneMonitorController::localizationSetUp()
{
    m_menu.apply(MenuRules::titles(appFullName, AtomicFile::readText(schedulerStatusInfoPath)));
}

void CorvaneMonitorController::menuWillOpen()
{
    if (blinkingTimer) {
        blinkingTimer.reset();
        isMonitorClickedAfterQuotaExceed = true;
    }
    takeMenuFacts(bringMenuInLine());
}

void CorvaneMonitorController::refreshMenuSoon()
{
    if (!m_menuTimer)
        m_menuTimer = m_clock.start(300ms, Clock::Repeat::Once, [this] { refreshMenu(); });
}

void CorvaneMonitorController::refreshMenu()
{
    std::ignore = bringMenuInLine();
}

MenuRules::MenuInputs CorvaneMonitorController::bringMenuInLine()
{
    m_menuTimer.reset();
    mUserDetails = UserRecords::getActiveUserDetails().value_or(QVariantMap());
    MenuRules::MenuInputs in = gatherMenuInputs();
    m_menu.apply(MenuRules::needsUpdate(in.appFullName, in.switchText));
    carryOut(MenuRules::atOpening(in));
    return in;
}

void CorvaneMonitorController::enableDisableManageSubMenus(MenuRules::RunningJob job)
{
    MenuState items;
    MenuRules::setJobItems(items, job);
    m_menu.apply(items);
}

void CorvaneMonitorController::enablePreferences()
{
    mUserDetails = UserRecords::getActiveUserDetails().value_or(QVariantMap());
    m_lastLoggedInUser = PropertyList::textValue(mUserDetails, QStringLiteral("Username"));
    if (!m_lastLoggedInUser || m_lastLoggedInUser->isEmpty())
        m_lastLoggedInUser = linkedAccount();
    QNUtility::removeFile(standardizedPath(formatted(cancelledAccountInfoPath, {userNameOfDetails()})));
    userNotLoggedIn = false;

    const MenuRules::MenuInputs in = gatherMenuInputs();
    takeMenuFacts(in);
    if (syncStateEntry())
        enableCorvaneSync();
    carryOut(MenuRules::atSignIn(in));
    getPlan(signedInUser());
    setStatusMenuIconForState(MenuIcons::normal);
    reloadPreferences();
    checkForTotalQuota();
}

void CorvaneMonitorController::reloadPreferences()
{
    const QString user = signedInUser();
    const auto states = PropertyList::readDictionary(pathValue(QLatin1String("SyncStateFilePath"), {}));
    // An account that is known only by its lower-cased name has not used sync from here before.
    isfreshAccount = !states || !states->contains(user);
    mIsSyncEnabled = isfreshAccount ? std::nullopt : std::optional(syncStateEntry());
    m_notifications.post(QStringLiteral("isFreshAccChecking"), QString(),
                         {{QStringLiteral("isFreshAccount"), isfreshAccount}});
    syncDaemonPreviousToolTip.reset();
    syncDaemonTooltip.reset();
    isSyncQuotaFull = false;
    isMenuIconForSyncAnimating = false;
    if (!mIsSyncEnabled.value_or(false)) {
        disableSync();
    } else {
        const auto list = PropertyList::readDictionary(
            pathValue(QLatin1String("SyncDetailsUserPath"), {homeDirectory(), user}));
        const auto pause = list ? PropertyList::textValue(*list, QStringLiteral("Pause")) : std::nullopt;
        if (pause) {
            if (*pause == u"1") {
                syncDaemonTooltip = pausedTooltip;
                syncDaemonPreviousToolTip = allFilesUpToDateTooltip;
            }
            setStatusMenuToolTip(corvaneDaemonTooltip, allFilesUpToDateTooltip.text());
            enableCorvaneSync();
        }
    }
    if (syncMenuAnimator || syncBWMenuAnimator) {
        isMenuIconForSyncAnimating = true;
        setStatusMenuIconForState(MenuIcons::normal);
        isMenuIconForSyncAnimating = false;
    }
}

void CorvaneMonitorController::reloadPreferencesFromApp()
{
    setStatusMenuIconForState(MenuIcons::syncStopped);
    manageLaunchOnStartup();
    bool listPresent = false;
    const auto word = protectionWordFor(mPreviouslyLoggedInUser.value_or(QString()), &listPresent);
    m_menu.apply(MenuRules::protectionAfterSettings(listPresent, word));
    refreshMenuSoon();
}

void CorvaneMonitorController::disableScheduleSubMenu()
{
    const MenuRules::JobSwitchClick click = MenuRules::jobSwitchClick(m_menu.title(MenuItem::SwitchJobs));
    m_menu.apply(MenuItem::SwitchJobs, {.title = click.nextTitle});
    std::ignore = AtomicFile::writeText(schedulerStatusInfoPath, click.word);
    MenuState items;
    MenuRules::setJobSwitch(items, AtomicFile::readText(schedulerStatusInfoPath));
    m_menu.apply(items);
    m_notifications.post(pathValue(QLatin1String("updateSchedulerJobStatusFromMonitor")));
    checkAndDisplayScheduleToolTip();
}

void CorvaneMonitorController::onlinehelp()
{
    if (LanguageManager::shared()
            .userDefaults()
            .value(LanguageManager::shared().languageKey)
            .toList()
            .isEmpty())
        return;
    if (const auto host = deploymentValue(QStringLiteral("PublicWebHost")))
        m_desktop.openUrl(QUrl(*host + QStringLiteral("/help/mac-help/default.htm")));
}

void CorvaneMonitorController::didClick(MenuAction action)
{
    switch (action) {
    case MenuAction::StartApplication:
        return launchApplication();
    case MenuAction::ManageJobs:
        return initiateLaunchCorvaneApp(QStringLiteral("ViewScheduleJobs"));
    case MenuAction::OpenSettings:
        return initiateLaunchCorvaneApp(QStringLiteral("Settings"));
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
        return viewSessionLog();
    case MenuAction::PauseOrResumeSync:
        return pauseResumeSync();
    case MenuAction::ShowStatus:
        return later("statusBtnClicked");
    case MenuAction::ShowProgress:
        return showProgressBtnClicked();
    case MenuAction::PauseOrResumeJob:
        return pauseBtnSubMenuActn();
    case MenuAction::StopJob:
        // It asks a question, and a panel waits until the click has been dealt with.
        m_questionTimer = m_clock.start(0ms, Clock::Repeat::Once, [this] { stopBtnSubMenuActn(); });
        return;
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

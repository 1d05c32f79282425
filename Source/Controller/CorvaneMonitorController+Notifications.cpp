// What the other programs of the product announce. The names that stand in the path table are looked up; the
// others are the announcements' own.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Platform/NotificationCenter.h"
#include "Platform/PropertyList.h"
#include "Source/Controller/Later.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

void CorvaneMonitorController::registerObservers()
{
    using Handler = DistributedNotificationCenter::Handler;
    const auto observe = [this](const QString &name, Handler handler) {
        m_observations.push_back(m_notifications.observe(
            name, [this, handler = std::move(handler)](const QString &object, const QVariantMap &userInfo) {
                m_jobs.forgetFacts(); // whoever announces something has changed it in the files first
                handler(object, userInfo);
            }));
    };
    const auto call = [](std::function<void()> operation) -> Handler {
        return [operation = std::move(operation)](const QString &, const QVariantMap &) { operation(); };
    };
    const auto notYet = [](Later::Operation operation) -> Handler {
        return [operation](const QString &, const QVariantMap &) { later(operation); };
    };
    const auto key = [](const char *name) { return pathValue(QLatin1StringView(name)); };

    observe(u"AppleInterfaceThemeChangedNotification"_s, [this](const QString &, const QVariantMap &) {
        darkModeChanged();
        later("displayHandleofCDP");
    });
    observe(u"OpenPreferencesNotification"_s,
            [this](const QString &object, const QVariantMap &) { openPreferences(object); });
    observe(u"ActivityLogsFromMonitor"_s,
            [this](const QString &object, const QVariantMap &) { m_logs.launchActivityLogs(object); });
    observe(u"EnableDisableSync"_s,
            [this](const QString &, const QVariantMap &userInfo) { m_sync.enableDisbleSync(userInfo); });
    observe(u"ShowSchedulerProgress"_s, call([this] { m_reports.showSchedulerProgress(); }));
    observe(u"RecalQuotaForSync"_s, call([this] { m_sync.recalQuotaForSync(); }));
    observe(u"selectiveSyncPlistDidChange"_s, notYet("selectiveSyncPlistModified"));
    observe(key("EnablePreferencesNotification"), call([this] { enablePreferences(); }));
    observe(key("DisablePreferencesNotification"), call([this] { resetMonitorUI(); }));
    observe(key("ReloadPreferences"), call([this] { reloadPreferencesFromApp(); }));
    m_localObservations.push_back(
        NotificationCenter::local().observe(u"closeProxySettingsWindow"_s, [](const QVariantMap &) {
            later("closeProxySettingsWindowNotificationReceived");
        }));
    observe(u"moveStarted"_s, call([this] { m_board.moveStartedToolTipMessage(); }));
    observe(u"moveCompleted"_s, call([this] { m_board.moveCompletedToolTipMessage(); }));
    observe(key("FDAOpenFromCorvane"), notYet("closeFullDiskAccessWindow"));
    observe(key("UpdateImmediateScheduleToolTip"), call([this] { checkForTotalQuota(); }));
    observe(u"SendingIPCMessageFailedFromSDToM"_s, [this](const QString &, const QVariantMap &userInfo) {
        receivedIPCMessageFailedFromSDToM(userInfo);
    });
}

void CorvaneMonitorController::receivedIPCMessageFailedFromSDToM(const QVariantMap &userInfo)
{
    const QVariant details = userInfo.value(u"MessageDetails"_s);
    QVariantList array;
    for (const QString &text : details.toStringList())
        array.append(text);
    QNLogger::logMonitorTrace(u"receivedIPCMessageFailedFromSDToM: "_s + IpcMessage::describe(array));
    didReceiveIPCMessage(array, Origin::SyncDaemon);
}

void CorvaneMonitorController::enablePreferences()
{
    m_account.signedIn();
    manageLaunchOnStartup();
    later("closeDesktopNotification");
    const QString user = m_account.userNameOfDetails();
    QNUtility::removeFile(accountPath(pathValue("CancelledAccountInfoPath"_L1), {user}));
    m_sync.start();
    m_menu.enablePreferences();
    m_account.getPlan(m_account.signedInUser());
    m_sync.reloadPreferences();
    m_logs.userDidChange();
    checkForTotalQuota();
}

void CorvaneMonitorController::resetMonitorUI()
{
    m_account.signedOut();
    m_quota.stopBlinking();
    m_board.signedOut();
    m_logs.userDidChange();
    m_menu.refreshMenu();
}

/// Carries out what the record says and nobody has announced: the main application may have ended badly, or the
/// session bus been away.
void CorvaneMonitorController::followRecord()
{
    switch (m_account.unannouncedChange()) {
    case Account::Unannounced::Nothing:
        return;
    case Account::Unannounced::SignIn:
        return enablePreferences();
    case Account::Unannounced::SignOut:
        return resetMonitorUI();
    }
}

void CorvaneMonitorController::reloadPreferencesFromApp()
{
    m_board.setStatusMenuIconForState(MenuIcons::syncStopped);
    manageLaunchOnStartup();
    m_menu.reloadPreferencesFromApp();
}

void CorvaneMonitorController::manageLaunchOnStartup()
{
    m_account.readDetails();
    Launcher::manageLaunchOnStartup(PropertyList::textValue(m_account.details(), u"Username"_s));
}

void CorvaneMonitorController::openPreferences(const QString &object)
{
    follow(LaunchRules::preferencesRequest(object));
}

void CorvaneMonitorController::follow(LaunchRules::Redirection redirection)
{
    switch (redirection) {
    case LaunchRules::Redirection::ResetThenPreferences:
        resetMonitorUI();
        return openPreferences(QString());
    case LaunchRules::Redirection::ErrorReport:
        return showErrorReport();
    case LaunchRules::Redirection::ActivityLogs:
        return m_logs.viewSessionLog();
    case LaunchRules::Redirection::Preferences:
        return openProxySettings();
    }
}

void CorvaneMonitorController::applicationWasActivated()
{
    if (const auto redirection = Launcher::redirectLaunch())
        follow(*redirection);
    m_logs.shouldShowLogView();
}

void CorvaneMonitorController::loclaizationSetup(const QVariantMap &userInfo)
{
    const auto language = PropertyList::textValue(userInfo, u"language"_s);
    // Any other text would make the preferences that all the product's programs share as large as it is.
    if (language && LanguageManager::shared().supportedLanguages.contains(*language)) {
        LanguageManager::shared().updateLanguage(*language);
        QNLogger::logMonitorTrace(u"IPC loclaizationSetup language: "_s + *language);
        m_sync.sendLanguage(*language);
    }
    // One restart takes in every change that comes before it; the others get a second to take in the change.
    if (!m_restart)
        m_restart = m_clock.start(1s, Clock::Repeat::Once, [this] { restart(); });
}

void CorvaneMonitorController::restart()
{
    // The language that could not be written would be lost with this process.
    if (!LanguageManager::shared().save()) {
        m_restart = m_clock.start(10s, Clock::Repeat::Once, [this] { restart(); });
        return;
    }
    if (const auto error = m_desktop.relaunch())
        std::printf("posix_spawn failed: %s\n", error->toUtf8().constData());
    m_desktop.quit();
}

// What a start finds in the product's folder, the opening of the main application, and the ways in which the
// process ends.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Extensions/TextFormat.h"
#include "Platform/AtomicFile.h"
#include "Platform/Bundle.h"
#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/LaunchRules.h"
#include "Utility/LoginItemRegistry.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <QDir>
#include <QFileInfo>

#include <cstdio>

using namespace std::chrono_literals;
using namespace MonitorControllerVC;

QString CorvaneMonitorController::rootFile(const QString &name) const
{
    return pathValue(QLatin1String("ApplicationRootFolderPath"), {}) + u'/' + name;
}

void CorvaneMonitorController::manageLaunchOnStartup()
{
    mUserDetails = UserRecords::getActiveUserDetails().value_or(QVariantMap());
    const auto settings = PropertyList::readDictionary(pathValue(QLatin1String("AppDefaultSettings"), {}));
    if (LaunchRules::launchesAtLogin(settings,
                                     PropertyList::textValue(mUserDetails, QStringLiteral("Username"))))
        LoginItemRegistry::addLoginItemWithPath(Bundle::main().executablePath(), LoginItemRegistry::HideIt::No);
    else
        LoginItemRegistry::removeLoginItemWithPath(pathValue(QLatin1String("MonitorExecPath")));
}

void CorvaneMonitorController::removeUpdateDMGFolder()
{
    const QString root = pathValue(QLatin1String("ApplicationRootFolderPath"), {});
    const QString folder = LaunchRules::updateFolder(root, pathValue(QLatin1String("ApplicationName")));
    if (LaunchRules::removesUpdateFolder(
            {.rootFolder = root,
             .folder = folder,
             .folderExists = QFileInfo::exists(folder),
             .checkFileExists = QFileInfo::exists(rootFile(LaunchRules::UpdateCheckFile))}))
        QDir(folder).removeRecursively();
}

void CorvaneMonitorController::redirectLaunch()
{
    const QString file = pathValue(QLatin1String("MonitorLaunchPath"), {});
    const auto text = AtomicFile::readText(file);
    if (!text)
        return;
    follow(LaunchRules::launchRedirection(*text, pathValue(QLatin1String("DisablePreferencesNotification"))));
    QNUtility::removeFile(file);
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
        return viewSessionLog();
    case LaunchRules::Redirection::Preferences:
        return openProxySettings();
    }
}

void CorvaneMonitorController::openPreferences(const QString &object)
{
    follow(LaunchRules::preferencesRequest(object));
}

void CorvaneMonitorController::resetMonitorUI()
{
    corvaneDaemonTooltip = appFullName;
    setButtonToolTip(std::nullopt);
    setStatusMenuIconForState(MenuIcons::normal);
    blinkingTimer.reset();
    refreshMenuSoon();
}

void CorvaneMonitorController::showTrayHelp()
{
    const QString file = pathValue(QLatin1String("InstallForTrayInfoPath"), {});
    if (!QFileInfo::exists(file))
        return;
    if (!m_desktop.panelIsVisible()) {
        QNUtility::removeFile(file);
        QNLogger::logMonitorTrace(QStringLiteral("popover is hidden because menu bar is hidden"));
        return;
    }
    showPopOverMessage(formatted(monitorTooltipStart, {pathValue(QLatin1String("ApplicationName"))}));
    QNUtility::removeFile(file);
}

void CorvaneMonitorController::showPopOverMessage(const QString &content)
{
    m_desktop.showPopover(content);
}

void CorvaneMonitorController::announceSilentUpdate()
{
    if (!QNUtility::removeFile(rootFile(LaunchRules::SilentInstallFile)))
        return;
    m_delayed.push_back(m_clock.start(5s, Clock::Repeat::Once, [this] {
        showPopOverMessage(pathValue(QLatin1String("ApplicationFullName")) + isUpToDate.text());
    }));
}

void CorvaneMonitorController::launchApplication()
{
    const QString path = pathValue(QLatin1String("ApplicationExecPath"), {});
    if (!m_desktop.openProgram(path) &&
        !m_desktop.launchProgram(pathValue(QLatin1String("ApplicationExecName"))))
        QNLogger::logMonitorTrace(QStringLiteral("The main application could not be started from ") + path);
}

void CorvaneMonitorController::launchCorvane()
{
    const QString helper = rootFile(LaunchRules::LaunchHelper);
    if (QFileInfo::exists(helper) && !QNUtility::removeFile(helper))
        return;
    if (!QFile::copy(Bundle::main().resource(LaunchRules::LaunchHelper), helper))
        return;
    m_desktop.runHelper(helper, {helper, pathValue(QLatin1String("ApplicationFullName"))});
}

void CorvaneMonitorController::displayWindowWithAlertMsg(const QString &text)
{
    m_desktop.showAlert(text);
    isAlertWindowOpen = true;
}

void CorvaneMonitorController::alertWindowDidClose()
{
    isAlertWindowOpen = false;
}

bool CorvaneMonitorController::mainApplicationRuns() const
{
    return QNUtility::getBSDProcessList().contains(pathValue(QLatin1String("ApplicationFullName")));
}

void CorvaneMonitorController::initiateLaunchCorvaneApp(const QString &redirectionType)
{
    launchRedirectionType = redirectionType;
    if (mainApplicationRuns()) {
        m_desktop.activateApplication(QStringLiteral("com.halvernet.Corvane"));
        timerFired();
        return;
    }
    launchApplication();
    m_viewTimer = m_clock.start(6s, Clock::Repeat::Once, [this] { timerFired(); });
}

void CorvaneMonitorController::timerFired()
{
    if (const auto request = LaunchRules::viewRequest(launchRedirectionType))
        m_notifications.post(request->name, QString(), request->userInfo);
}

void CorvaneMonitorController::loclaizationSetup(const QVariantMap &userInfo)
{
    const auto language = PropertyList::textValue(userInfo, QStringLiteral("language"));
    if (language) {
        UserDefaults &defaults = LanguageManager::shared().userDefaults();
        defaults.setValue(LanguageManager::shared().languageKey, QVariantList{*language});
        defaults.synchronize();
        QNLogger::logMonitorTrace(QStringLiteral("IPC loclaizationSetup language: ") + *language);
        sendToSyncDaemon(*language, SyncMessage::Language);
    }
    // The others get a second to take in the change; no timer of this process matters any more by then.
    m_delayed.push_back(m_clock.start(1s, Clock::Repeat::Once, [this] {
        if (const auto error = m_desktop.relaunch())
            std::printf("posix_spawn failed: %s\n", error->toUtf8().constData());
        m_desktop.quit();
    }));
}

void CorvaneMonitorController::quitApplication()
{
    m_desktop.quit();
}

#include "Source/Controller/Launcher.h"

#include "Extensions/TextFormat.h"
#include "Platform/AtomicFile.h"
#include "Platform/Bundle.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/QNLogger.h"
#include "Source/Logger/WriteTrace.h"
#include "Utility/Language/CVAppLocalization.h"
#include "Utility/LoginItemRegistry.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <QDir>
#include <QFileInfo>

using namespace MonitorControllerVC;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
const QString MainApplicationIdentifier = u"com.halvernet.Corvane"_s;
constexpr qint64 LargestHelper = 16 * 1024 * 1024; // a small program, shipped with this one
} // namespace

Launcher::Launcher(const DesktopActions &desktop, Clock &clock, DistributedNotificationCenter &notifications)
    : m_desktop(desktop), m_clock(clock), m_notifications(notifications)
{
}

void Launcher::after(Clock::Duration time, std::function<void()> work)
{
    m_delayed.push_back(m_clock.start(time, Clock::Repeat::Once, std::move(work)));
}

void Launcher::launchApplication()
{
    if (mainApplicationRuns())
        return m_desktop.activateApplication(MainApplicationIdentifier);
    const QString path = pathValue("ApplicationExecPath"_L1, {});
    if (!m_desktop.openProgram(path) && !m_desktop.launchProgram(pathValue("ApplicationExecName"_L1)))
        QNLogger::logMonitorTrace(u"The main application could not be started from "_s + path);
}

void Launcher::launchCorvane()
{
    const QString helper = LaunchRules::rootFile(LaunchRules::LaunchHelper);
    const auto program = AtomicFile::read(Bundle::main().resource(LaunchRules::LaunchHelper), LargestHelper);
    if (!program || !traceFailure(helper, AtomicFile::write(helper, *program, {.newFileMode = 0755})))
        return;
    m_desktop.runHelper(helper, {helper, pathValue("ApplicationFullName"_L1)});
}

bool Launcher::mainApplicationRuns()
{
    return QNUtility::getBSDProcessList().contains(pathValue("ApplicationFullName"_L1));
}

void Launcher::initiateLaunchCorvaneApp(const QString &redirectionType)
{
    launchRedirectionType = redirectionType;
    if (mainApplicationRuns()) {
        m_desktop.activateApplication(MainApplicationIdentifier);
        return timerFired();
    }
    launchApplication();
    m_viewTimer = m_clock.start(6s, Clock::Repeat::Once, [this] { timerFired(); });
}

void Launcher::timerFired()
{
    if (const auto request = LaunchRules::viewRequest(launchRedirectionType))
        m_notifications.post(request->name, QString(), request->userInfo);
}

std::optional<LaunchRules::Redirection> Launcher::redirectLaunch()
{
    const QString file = pathValue("MonitorLaunchPath"_L1, {});
    const auto text = AtomicFile::readText(file);
    if (!text)
        return std::nullopt;
    const auto redirection =
        LaunchRules::launchRedirection(*text, pathValue("DisablePreferencesNotification"_L1));
    QNUtility::removeFile(file);
    return redirection;
}

void Launcher::manageLaunchOnStartup(const std::optional<QString> &user)
{
    const auto settings = PropertyList::readDictionary(pathValue("AppDefaultSettings"_L1, {}));
    switch (LaunchRules::loginItem(settings, user)) {
    case LaunchRules::LoginItem::Leave:
        return;
    case LaunchRules::LoginItem::Add:
        LoginItemRegistry::addLoginItemWithPath(Bundle::main().executablePath(), LoginItemRegistry::HideIt::No);
        return;
    case LaunchRules::LoginItem::Remove:
        LoginItemRegistry::removeLoginItemWithPath(pathValue("MonitorExecPath"_L1));
        return;
    }
}

void Launcher::removeUpdateDMGFolder()
{
    const QString root = pathValue("ApplicationRootFolderPath"_L1, {});
    const QString folder = LaunchRules::updateFolder(root, pathValue("ApplicationName"_L1));
    const LaunchRules::UpdateLeftover leftover{
        .rootFolder = root,
        .folder = folder,
        .folderExists = QFileInfo::exists(folder),
        .checkFileExists = QFileInfo::exists(LaunchRules::rootFile(LaunchRules::UpdateCheckFile))};
    if (LaunchRules::removesUpdateFolder(leftover) && !QDir(folder).removeRecursively())
        QNLogger::logMonitorTrace(u"The package folder could not be removed: "_s + folder);
}

void Launcher::showPopOverMessage(const QString &content)
{
    m_desktop.showPopover(content);
}

void Launcher::showTrayHelp()
{
    const QString file = pathValue("InstallForTrayInfoPath"_L1, {});
    if (!QFileInfo::exists(file))
        return;
    m_helpAwaitsPanel = !m_desktop.panelIsVisible();
    if (m_helpAwaitsPanel) {
        QNLogger::logMonitorTrace(u"The help at the status item waits for a panel"_s);
        return;
    }
    showPopOverMessage(formatted(monitorTooltipStart, {pathValue("ApplicationName"_L1)}));
    QNUtility::removeFile(file);
}

void Launcher::panelDidAppear()
{
    // The panel has yet to lay out the item at which the help is shown.
    if (m_helpAwaitsPanel)
        after(1s, [this] { showTrayHelp(); });
}

void Launcher::announceSilentUpdate()
{
    if (!QNUtility::removeFile(LaunchRules::rootFile(LaunchRules::SilentInstallFile)))
        return;
    after(5s, [this] { showPopOverMessage(pathValue("ApplicationFullName"_L1) + isUpToDate.text()); });
}

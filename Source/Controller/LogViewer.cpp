#include "Source/Controller/LogViewer.h"

#include "Classes/ACTIVITY_LOGS/LogFolderChooser.h"
#include "Platform/PropertyList.h"
#include "Source/Controller/Account.h"
#include "Source/Controller/Later.h"
#include "Source/Controller/Launcher.h"
#include "Source/Controller/Updater.h"
#include "Utility/Language/LanguageManager.h"
#include "Utility/LaunchRules.h"
#include "Utility/Paths/PathTable.h"
#include "Utility/QNUtility.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace
{
/// Whether that flag stood in the product's folder. One that can't be taken away would act at every look.
bool takeFlag(const QString &name)
{
    return QNUtility::removeFile(LaunchRules::rootFile(name));
}
} // namespace

LogViewer::LogViewer(Surroundings surroundings, Others others)
    : m_others(others), m_inProgressLogsWereRemoved(std::move(surroundings.inProgressLogsWereRemoved)),
      m_window({.view = {.clock = surroundings.clock,
                         .defaults = LanguageManager::shared().userDefaults(),
                         .publicWebHost = std::move(surroundings.publicWebHost),
                         .chooseFolder = chooseLogFolder},
                .isDark = std::move(surroundings.isDark)})
{
    logs().mainController = this;
}

void LogViewer::start()
{
    logs().viewDidLoad();
}

void LogViewer::viewSessionLog()
{
    logs().displayLogs(logs().logsFrom());
    m_window.showWindow();
}

void LogViewer::launchActivityLogs(const QString &object)
{
    if (object == u"ActivityLogs"_s)
        viewSessionLog();
}

void LogViewer::shouldShowLogView()
{
    if (takeFlag(u"viewLogs"_s)) {
        logs().displayLogs(LogPeriods::Week);
        m_window.showWindow();
    }
    if (takeFlag(u"remoteInstall"_s))
        m_others.updater.remoteInstall();
    if (takeFlag(u"viewManageScheduleJobs"_s))
        m_others.launcher.initiateLaunchCorvaneApp(u"ViewScheduleJobs"_s);
}

void LogViewer::displayLogs()
{
    if (!logs().showsArchive())
        logs().displayLogs(logs().logsFrom());
}

void LogViewer::userDidChange()
{
    logs().userDidChange();
}

void LogViewer::deleteLog(const QVariantMap &order)
{
    const auto file = PropertyList::textValue(order, u"logFile"_s);
    const auto operation = PropertyList::textValue(order, u"operation"_s);
    if (file && operation)
        logs().deleteLog(*file, *operation);
}

// ---- The daemon's channel ----------------------------------------------------------------------------------

QStringList LogViewer::inProgressOperations()
{
    return logs().takeInProgressOperations();
}

void LogViewer::daemonDidConnect()
{
    logs().daemonDidConnect();
}

void LogViewer::daemonDidDisconnect()
{
    logs().daemonDidDisconnect();
}

// ---- What the logs ask for ---------------------------------------------------------------------------------

std::optional<QString> LogViewer::lastLoggedInUser() const
{
    return m_others.account.lastLoggedInUser();
}

bool LogViewer::ask(const LogQuestion &question)
{
    return m_others.desktop.ask({.title = question.title,
                                 .text = question.text,
                                 .defaultButton = question.defaultButton,
                                 .alternateButton = question.alternateButton}) == DesktopActions::DefaultButton;
}

void LogViewer::initiateLaunchCorvaneApp(const QString &launchRedirectionType)
{
    m_others.launcher.initiateLaunchCorvaneApp(launchRedirectionType);
}

void LogViewer::presentFullDiskAccessWindow()
{
    later("presentFullDiskAccessWindow");
}

void LogViewer::openUrl(const QUrl &address)
{
    m_others.desktop.openUrl(address);
}

void LogViewer::openPlainText(const QString &path)
{
    m_others.desktop.openPlainText(path);
}

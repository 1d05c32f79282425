#include "Classes/AlertPanel/AlertPaneWindowController.h"
#include "Platform/Bundle.h"
#include "Platform/Clock.h"
#include "Platform/CommandQueue.h"
#include "Platform/Desktop/Appearance.h"
#include "Platform/Desktop/ApplicationService.h"
#include "Platform/Desktop/Applications.h"
#include "Platform/Desktop/PanelWatch.h"
#include "Platform/Desktop/Popover.h"
#include "Platform/Desktop/RunningInstance.h"
#include "Platform/Desktop/TrayStatusItem.h"
#include "Platform/Ending.h"
#include "Platform/SessionBus/BusProbe.h"
#include "Platform/SingleInstance.h"
#include "Platform/Umask.h"
#include "Source/Controller/CorvaneMonitorController.h"
#include "Source/Controller/ProcessLife.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Language/AlertPanel.h"
#include "Utility/Paths/PathTable.h"

#include <QApplication>
#include <QScopeGuard>
#include <QSessionManager>
#include <QStandardPaths>

#include <csignal>

using namespace Qt::StringLiterals;

using namespace std::chrono_literals;

namespace
{
void openUrl(const QUrl &url)
{
    // By hand, since a browser that the platform starts would not get a bus that is withheld here.
    Applications::open(QStandardPaths::findExecutable(u"xdg-open"_s), {url.toString(QUrl::FullyEncoded)});
}
} // namespace

int main(int argc, char **argv)
{
    Umask::keepPrivate();
    Ending::listen();
    // A daemon that goes away while it is written to must not take the monitor with it, nor a limit on file
    // sizes.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    const auto deadline = std::chrono::steady_clock::now() + RunningInstance::Limit;
    BusProbe::Question bus(BusProbe::StartLimit);
    const QString identifier = Bundle::main().identifier().value_or(QString());
    SingleInstance place(SingleInstance::lockFile(pathValue("ApplicationRootFolderPath"_L1, {})));
    BusProbe::settle(bus); // before the desktop's libraries look for the bus
    if (Ending::hasBegun())
        return 0;

    QApplication application(argc, argv);
    // What is to be deleted in the next turn of the loop gets no turn after the last.
    const auto lastTurn =
        qScopeGuard([] { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); });
    QApplication::setApplicationName(u"corvane-monitor"_s);
    QApplication::setDesktopFileName(identifier);
    QApplication::setQuitOnLastWindowClosed(false);
    QObject::connect(
        &application, &QGuiApplication::commitDataRequest, &application, [](QSessionManager &session) {
            session.setRestartHint(
                QSessionManager::RestartNever); // the login item starts it, where the user wants that
        });
    ProcessLife::quitWhenTold();
    if (const auto status = ProcessLife::yieldToFirst(place, identifier, deadline))
        return *status;

    SystemClock clock;
    CorvaneMonitorController *controller = nullptr;
    const auto tell = [&controller](void (CorvaneMonitorController::*change)()) {
        return [&controller, change] {
            if (controller)
                (controller->*change)();
        };
    };
    DistributedNotificationCenter notifications;
    const Appearance appearance(qEnvironmentVariable("XDG_CURRENT_DESKTOP"),
                                tell(&CorvaneMonitorController::darkModeChanged),
                                tell(&CorvaneMonitorController::windowLookChanged), notifications.bus());
    PanelWatch panels(notifications.bus());
    TrayStatusItem statusItem(Bundle::main().resource(u"images"_s), panels);
    Popover popover(clock, [&controller] { return controller && controller->applicationIsOnTheDarkSide(); });
    const AlertSurroundings alerts{
        .isDark = [&controller] { return controller && controller->windowsAreOnTheDarkSide(); },
        .openUrl = openUrl,
        .publicWebHost = CorvaneMonitorController::deploymentValue(u"PublicWebHost"_s).value_or(QString()),
        .iconFile = Bundle::main().resource(u"images/corvane.svg"_s),
        .productName = pathValue("ApplicationFullName"_L1),
    };
    std::unique_ptr<AlertPaneWindowController> message; ///< one at a time: a new one takes its place

    CommandQueue commands(clock, [] {
        QNLogger::logMonitorTrace(u"A command that waited was not run: the system refused it"_s);
    });
    CorvaneMonitorController owner({
        .statusItem = statusItem,
        .clock = clock,
        .notifications = notifications,
        .desktop = {
            .isDark = [&appearance] { return appearance.isDark(); },
            .isDesktopDark = [&appearance] { return appearance.isDesktopDark(); },
            .panelIsVisible = [&statusItem] { return statusItem.isInPanel(); },
            .showPopover = [&](const QString &text) { popover.show(text, statusItem.geometry()); },
            .showAlert =
                [&](const QString &text) {
                    message = AlertPaneWindowController::withdefaultButton(alerts, AlertPanel::okButton.text());
                    message->mainController = controller;
                    message->displayMessage(text, std::nullopt, false);
                    message->showWindow();
                },
            .ask =
                [&](const DesktopActions::Question &question) {
                    const auto alert = AlertPaneWindowController::withdefaultButton(
                        alerts, question.defaultButton, question.alternateButton);
                    return alert->displayMessage(question.text, question.title, true);
                },
            .refreshWindowColours = AlertPaneWindowController::refreshColours,
            .openUrl = openUrl,
            .activateApplication =
                [&notifications](const QString &bundle) {
                    if (!Applications::activate(bundle, notifications.bus()))
                        QNLogger::logMonitorTrace(u"A program could not be asked to come forward: "_s + bundle);
                },
            .openProgram = [](const QString &path) { return Applications::open(path); },
            .launchProgram = [](const QString &name) { return Applications::launch(name); },
            .runHelper = [](const QString &path,
                            const QStringList &arguments) { Applications::open(path, arguments); },
            .relaunch = ProcessLife::relaunch,
            .quit = Ending::begin,
            .runShell = [&commands](const QString &command) { return commands.run(command); },
        },
    });
    controller = &owner;
    statusItem.setMenu(owner.menu().menu());
    statusItem.setTaken(tell(&CorvaneMonitorController::panelDidAppear));
    statusItem.setMoved(tell(&CorvaneMonitorController::statusBarDidMove));
    statusItem.setOtherPanel([] { ProcessLife::startAnew("the panel is of another kind now"); });
    ApplicationService service(
        identifier, [&owner] { owner.applicationWasActivated(); }, notifications.bus(),
        QNLogger::logMonitorTrace);
    service.start();
    owner.awakeFromNib();

    // The library tries to reach the bus once in a process, so one that began without it starts anew.
    notifications.setBusReturned([&, hadBus = notifications.isConnected()] {
        if (hadBus)
            statusItem.renew();
        else
            ProcessLife::startAnew("the session bus has come");
    });
    return Ending::hasBegun() ? 0 : QApplication::exec();
}

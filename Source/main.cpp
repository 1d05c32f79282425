#include "Classes/AlertPanel/AlertPaneWindowController.h"
#include "Platform/Bundle.h"
#include "Platform/Clock.h"
#include "Platform/Desktop/Appearance.h"
#include "Platform/Desktop/ApplicationService.h"
#include "Platform/Desktop/Applications.h"
#include "Platform/Desktop/Popover.h"
#include "Platform/Desktop/TrayStatusItem.h"
#include "Platform/Relaunch.h"
#include "Platform/SingleInstance.h"
#include "Platform/SocketOwner.h"
#include "Source/Controller/CorvaneMonitorController.h"
#include "Utility/Language/AlertPanel.h"
#include "Utility/Paths/PathTable.h"

#include <QApplication>
#include <QSessionManager>
#include <QSocketNotifier>
#include <QStandardPaths>
#include <QSystemTrayIcon>

#include <csignal>
#include <sys/signalfd.h>
#include <tuple>

using namespace std::chrono_literals;

namespace
{
/// The signals by which the session asks the process to go. They are blocked before the first thread starts,
/// since any thread that had them open could be the one that is ended by them, and read from a descriptor.
sigset_t blockEndingSignals()
{
    sigset_t ending;
    sigemptyset(&ending);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&ending, number);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    return ending;
}

/// Ends the event loop with status 0 when one of them comes.
void quitOn(const sigset_t &signals)
{
    auto *notifier =
        new QSocketNotifier(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK), QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [] { QApplication::exit(0); });
}

/// The one monitor of this user and home. A second one asks the first to come forward and is told to go.
bool claimPlace(SingleInstance &place, const QString &identifier)
{
    if (place.claim(0ms) != SingleInstance::Answer::Taken)
        return true;
    Applications::activate(identifier);
    return place.claim(SingleInstance::PredecessorGrace) != SingleInstance::Answer::Taken;
}
void openUrl(const QUrl &url)
{
    // By hand, since a browser that the platform starts would inherit the blocked signals.
    Applications::open(QStandardPaths::findExecutable(QStringLiteral("xdg-open")),
                       {url.toString(QUrl::FullyEncoded)});
}
} // namespace

int main(int argc, char **argv)
{
    // A daemon that goes away while it is written to must not take the monitor with it.
    std::signal(SIGPIPE, SIG_IGN);
    const sigset_t ending = blockEndingSignals();

    QApplication application(argc, argv);
    const QString identifier = Bundle::main().identifier().value_or(QString());
    QApplication::setApplicationName(QStringLiteral("corvane-monitor"));
    QApplication::setDesktopFileName(identifier);
    QApplication::setQuitOnLastWindowClosed(false);
    QObject::connect(
        &application, &QGuiApplication::commitDataRequest, &application, [](QSessionManager &session) {
            session.setRestartHint(
                QSessionManager::RestartNever); // the login item starts it, where the user wants that
        });
    quitOn(ending);

    SingleInstance place(SingleInstance::lockFile(pathValue(QLatin1String("ApplicationRootFolderPath"), {})));
    if (!claimPlace(place, identifier))
        return 0;

    SystemClock clock;
    CorvaneMonitorController *controller = nullptr;
    const auto tell = [&controller](void (CorvaneMonitorController::*change)()) {
        return [&controller, change] {
            if (controller)
                (controller->*change)();
        };
    };
    const Appearance appearance(qEnvironmentVariable("XDG_CURRENT_DESKTOP"),
                                tell(&CorvaneMonitorController::darkModeChanged),
                                tell(&CorvaneMonitorController::windowLookChanged));
    TrayStatusItem statusItem(Bundle::main().resource(QStringLiteral("images")));
    DistributedNotificationCenter notifications;
    Popover popover(clock, [&controller] { return controller && controller->applicationIsOnTheDarkSide(); });
    const AlertSurroundings alerts{
        .isDark = [&controller] { return controller && controller->windowsAreOnTheDarkSide(); },
        .openUrl = openUrl,
        .publicWebHost =
            CorvaneMonitorController::deploymentValue(QStringLiteral("PublicWebHost")).value_or(QString()),
        .iconFile = Bundle::main().resource(QStringLiteral("images/corvane.svg")),
        .productName = pathValue(QLatin1String("ApplicationFullName")),
    };
    std::unique_ptr<AlertPaneWindowController> message; ///< one at a time: a new one takes its place

    CorvaneMonitorController owner({
        .statusItem = statusItem,
        .clock = clock,
        .notifications = notifications,
        .desktop = {
            .isDark = [&appearance] { return appearance.isDark(); },
            .isDesktopDark = [&appearance] { return appearance.isDesktopDark(); },
            .panelIsVisible = [] { return QSystemTrayIcon::isSystemTrayAvailable(); },
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
            .activateApplication = [](const QString &bundle) { Applications::activate(bundle); },
            .openProgram = [](const QString &path) { return Applications::open(path); },
            .launchProgram = [](const QString &name) { return Applications::launch(name); },
            .runHelper = [](const QString &path,
                            const QStringList &arguments) { Applications::open(path, arguments); },
            .relaunch = [] { return Relaunch::spawnShell(Relaunch::command(Bundle::main().executablePath())); },
            .quit = [] { QApplication::exit(0); },
            .runShell = Applications::runShell,
            .isListenerTrusted =
                [](quint16 port) {
                    const auto user = SocketOwner::listenerOwner(port);
                    return user && SocketOwner::isTrusted(*user);
                },
        },
    });
    controller = &owner;
    ApplicationService service(identifier, [&owner] { owner.redirectLaunch(); });
    owner.awakeFromNib();
    service.start();

    statusItem.setMenu(owner.menu().menu());
    // Which kind of panel the desktop has is settled once in a process, so one that began without a bus starts
    // anew.
    notifications.setBusReturned([&, hadBus = notifications.isConnected()] {
        if (hadBus)
            return statusItem.renew();
        std::ignore = Relaunch::spawnShell(Relaunch::command(Bundle::main().executablePath()));
        QApplication::exit(0);
    });
    statusItem.show();
    return QApplication::exec();
}

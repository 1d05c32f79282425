#include "Classes/AlertPanel/AlertPaneWindowController.h"
#include "Platform/Bundle.h"
#include "Platform/Clock.h"
#include "Platform/CommandQueue.h"
#include "Platform/Desktop/Appearance.h"
#include "Platform/Desktop/ApplicationService.h"
#include "Platform/Desktop/Applications.h"
#include "Platform/Desktop/PanelWatch.h"
#include "Platform/Desktop/PlainTextOpener.h"
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

namespace
{
void openUrl(const QUrl &url)
{
    // By hand, since a browser that the platform starts would not get a bus that is withheld here.
    Applications::open(QStandardPaths::findExecutable(u"xdg-open"_s), {url.toString(QUrl::FullyEncoded)});
}

void activate(const QString &bundle, BusLink &bus)
{
    if (!Applications::activate(bundle, bus))
        QNLogger::logMonitorTrace(u"A program could not be asked to come forward: "_s + bundle);
}

/// The desktop as this process meets it. What the controller does goes out here; what happens there is told to
/// the controller from meet() on. Made before the controller and gone after it.
class Desktop
{
public:
    Desktop()
        : m_appearance(qEnvironmentVariable("XDG_CURRENT_DESKTOP"),
                       tell(&CorvaneMonitorController::darkModeChanged),
                       tell(&CorvaneMonitorController::windowLookChanged), m_notifications.bus()),
          m_panels(m_notifications.bus()), m_statusItem(Bundle::main().resource(u"images"_s), m_panels),
          m_popover(m_clock, [this] { return m_controller && m_controller->applicationIsOnTheDarkSide(); }),
          m_commands(
              m_clock,
              [] { QNLogger::logMonitorTrace(u"A command that waited was not run: the system refused it"_s); }),
          m_textOpener(m_clock)
    {
    }
    Desktop(const Desktop &) = delete;

    [[nodiscard]] CorvaneMonitorController::Surroundings surroundings()
    {
        return {.statusItem = m_statusItem,
                .clock = m_clock,
                .notifications = m_notifications,
                .desktop = actions()};
    }
    [[nodiscard]] BusLink &bus() { return m_notifications.bus(); }

    void meet(CorvaneMonitorController &controller)
    {
        m_controller = &controller;
        m_statusItem.setMenu(controller.menu().menu());
        m_statusItem.setTaken(tell(&CorvaneMonitorController::panelDidAppear));
        m_statusItem.setMoved(tell(&CorvaneMonitorController::statusBarDidMove));
        m_statusItem.setOtherPanel([] { ProcessLife::startAnew("the panel is of another kind now"); });
    }

    /// The library tries to reach the bus once in a process, so one that began without it starts anew.
    void followBus()
    {
        m_notifications.setBusReturned([this, hadBus = m_notifications.isConnected()] {
            if (hadBus)
                m_statusItem.renew();
            else
                ProcessLife::startAnew("the session bus has come");
        });
    }

private:
    [[nodiscard]] std::function<void()> tell(void (CorvaneMonitorController::*change)())
    {
        return [this, change] {
            if (m_controller)
                (m_controller->*change)();
        };
    }

    [[nodiscard]] DesktopActions actions()
    {
        return {
            .isDark = [this] { return m_appearance.isDark(); },
            .isDesktopDark = [this] { return m_appearance.isDesktopDark(); },
            .panelIsVisible = [this] { return m_statusItem.isInPanel(); },
            .showPopover = [this](const QString &text) { m_popover.show(text, m_statusItem.geometry()); },
            .showAlert = [this](const QString &text) { showAlert(text); },
            .ask = [this](const DesktopActions::Question &question) { return ask(question); },
            .refreshWindowColours = AlertPaneWindowController::refreshColours,
            .openUrl = openUrl,
            .openPlainText = [this](const QString &path) { m_textOpener.open(path); },
            .activateApplication = [this](const QString &bundle) { activate(bundle, bus()); },
            .openProgram = [](const QString &path) { return Applications::open(path); },
            .launchProgram = [](const QString &name) { return Applications::launch(name); },
            .runHelper = [](const QString &path,
                            const QStringList &arguments) { Applications::open(path, arguments); },
            .relaunch = ProcessLife::relaunch,
            .quit = Ending::begin,
            .runShell = [this](const QString &command) { return m_commands.run(command); },
        };
    }

    void showAlert(const QString &text)
    {
        m_message = AlertPaneWindowController::withdefaultButton(m_alerts, AlertPanel::okButton.text());
        m_message->mainController = m_controller;
        m_message->displayMessage(text, std::nullopt, false);
        m_message->showWindow();
    }
    [[nodiscard]] int ask(const DesktopActions::Question &question) const
    {
        const auto alert = AlertPaneWindowController::withdefaultButton(m_alerts, question.defaultButton,
                                                                        question.alternateButton);
        return alert->displayMessage(question.text, question.title, true);
    }

    SystemClock m_clock;
    CorvaneMonitorController *m_controller = nullptr;
    DistributedNotificationCenter m_notifications;
    Appearance m_appearance;
    PanelWatch m_panels;
    TrayStatusItem m_statusItem;
    Popover m_popover;
    const AlertSurroundings m_alerts{
        .isDark = [this] { return m_controller && m_controller->windowsAreOnTheDarkSide(); },
        .openUrl = openUrl,
        .publicWebHost = CorvaneMonitorController::deploymentValue(u"PublicWebHost"_s).value_or(QString()),
        .iconFile = Bundle::main().resource(u"images/corvane.svg"_s),
        .productName = pathValue("ApplicationFullName"_L1),
    };
    std::unique_ptr<AlertPaneWindowController> m_message; // one at a time: a new one takes its place
    CommandQueue m_commands;
    PlainTextOpener m_textOpener;
};

/// A daemon that goes away while it is written to must not take the monitor with it, nor a limit on file sizes.
void outliveFailedWrites()
{
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void introduce(QApplication &application, const QString &identifier)
{
    QApplication::setApplicationName(u"corvane-monitor"_s);
    QApplication::setDesktopFileName(identifier);
    QApplication::setQuitOnLastWindowClosed(false);
    // The login item starts it, where the user wants that.
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &application,
                     [](QSessionManager &session) { session.setRestartHint(QSessionManager::RestartNever); });
}
} // namespace

int main(int argc, char **argv)
{
    Umask::keepPrivate();
    Ending::listen();
    outliveFailedWrites();
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
    introduce(application, identifier);
    ProcessLife::quitWhenTold();
    if (const auto status = ProcessLife::yieldToFirst(place, identifier, deadline))
        return *status;

    Desktop desktop;
    CorvaneMonitorController controller(desktop.surroundings());
    desktop.meet(controller);
    ApplicationService service(
        identifier, [&controller] { controller.applicationWasActivated(); }, desktop.bus(),
        QNLogger::logMonitorTrace);
    service.start();
    controller.awakeFromNib();
    desktop.followBus();
    return Ending::hasBegun() ? 0 : QApplication::exec();
}

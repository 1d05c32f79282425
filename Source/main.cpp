#include "Platform/Bundle.h"
#include "Platform/Clock.h"
#include "Platform/Desktop/Appearance.h"
#include "Platform/Desktop/TrayStatusItem.h"
#include "Source/Controller/CorvaneMonitorController.h"

#include <QApplication>

#include <csignal>
#include <memory>

int main(int argc, char **argv)
{
    // A daemon that goes away while it is written to must not take the monitor with it.
    std::signal(SIGPIPE, SIG_IGN);

    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("corvane-monitor"));
    QApplication::setDesktopFileName(Bundle::main().identifier().value_or(QString()));
    QApplication::setQuitOnLastWindowClosed(false);

    SystemClock clock;
    TrayStatusItem statusItem(Bundle::main().resource(QStringLiteral("images")));
    CorvaneMonitorController *controller = nullptr;
    const Appearance appearance(qEnvironmentVariable("XDG_CURRENT_DESKTOP"), [&controller] {
        if (controller)
            controller->darkModeChanged();
    });
    CorvaneMonitorController owner({
        .statusItem = statusItem,
        .clock = clock,
        .isDesktopDark = [&appearance] { return appearance.isDark(); },
    });
    controller = &owner;
    owner.awakeFromNib();
    statusItem.show();
    return QApplication::exec();
}

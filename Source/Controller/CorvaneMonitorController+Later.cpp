// The operations that menu, messages and timers name but that no part of the program carries out yet. Each
// leaves a trace line and does nothing else; the file goes when the last of them stands.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Source/Logger/QNLogger.h"

void CorvaneMonitorController::later(const char *operation)
{
    QNLogger::logMonitorTrace(QStringLiteral("Not available in this version: ") + QLatin1String(operation));
}

void CorvaneMonitorController::showErrorReport()
{
    later("showErrorReport");
}

void CorvaneMonitorController::openProxySettings()
{
    later("openProxySettings");
}

void CorvaneMonitorController::viewSessionLog()
{
    later("viewSessionLog");
}

void CorvaneMonitorController::performAutoUpdateWithoutDateCheck()
{
    later("performAutoUpdateWithoutDateCheck");
}

void CorvaneMonitorController::disableSync()
{
    later("disableSync");
}

void CorvaneMonitorController::unlinkSync()
{
    later("unlinkSync");
}

void CorvaneMonitorController::syncPasswordChanged()
{
    later("syncPasswordChanged");
}

void CorvaneMonitorController::pauseResumeSync()
{
    later("pauseResumeSync");
}

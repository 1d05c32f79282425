// The controller's end of the channel to the backup daemon: what it is asked for while the channel connects,
// and what it sends.

#include "Source/Controller/CorvaneMonitorController.h"

#include "Messaging/OutboundMessages.h"
#include "Platform/Home.h"
#include "Platform/PropertyList.h"
#include "Source/Logger/QNLogger.h"
#include "Utility/Paths/PathTable.h"

void CorvaneMonitorController::connectToDemon()
{
    mTCPWithDaemon->connectToDemon();
}

void CorvaneMonitorController::sendData(const QVariantMap &message, qint64 tag)
{
    mTCPWithDaemon->sendData(message, tag);
}

void CorvaneMonitorController::sendDataToDaemonForCoreOperation(const std::optional<QVariantMap> &details,
                                                                ECoreOperationActionType action)
{
    const OutboundMessages::CoreOperation operation{
        .profileName = ::consoleUser(),
        .userName = schedulerController.currentscheduleuser,
        .isRestore = schedulerController.currentScheduleType == QNXScheduleType::restore,
        .isDedup = QNUtility::userType == EUserType::Dedup,
    };
    mTCPWithDaemon->send(
        OutboundMessages::clientCoreOperation(details.value_or(QVariantMap()), action, operation));
}

std::optional<qint64> CorvaneMonitorController::daemonPort()
{
    // Asked for a hundred times a second while the daemon is away, so the file is read only when it has
    // changed.
    const auto port = m_portFile.read(pathValue(QLatin1String("TCPPortFile"), {}));
    if (port)
        return *port;
    QNLogger::logMonitorTrace(
        QStringLiteral("The backup daemon has published no port; nothing connects to it"));
    return std::nullopt;
}

std::shared_ptr<const qint64> CorvaneMonitorController::decodePortFile(const QString &path)
{
    const auto file = PropertyList::readDictionary(path);
    const auto port = file ? PropertyList::intValue(*file, QStringLiteral("port")) : std::nullopt;
    return port ? std::make_shared<const qint64>(*port) : nullptr;
}

QVariantMap CorvaneMonitorController::pingDetails()
{
    dataDict = UserRecords::getActiveUserDetails().value_or(QVariantMap());
    return OutboundMessages::pingDetails(loggedInProfile,
                                         PropertyList::textValue(dataDict, QStringLiteral("Username")), {});
}

void CorvaneMonitorController::channelDidConnect()
{
    QNLogger::logMonitorTrace(QStringLiteral("Connected to the backup daemon"));
}

void CorvaneMonitorController::channelDidDisconnect()
{
}

void CorvaneMonitorController::didReceiveProgress(const DaemonMessage &report)
{
    didReceiveIPCMessageOperationForProgress(report);
}

void CorvaneMonitorController::didReceiveMessage(const QVariantList &message)
{
    didReceiveIPCMessage(message, Origin::BackupDaemon);
}

void CorvaneMonitorController::didRefusePayload(const QString &reason)
{
    QNLogger::logMonitorTrace(QStringLiteral("A message of the backup daemon was skipped: ") + reason);
}

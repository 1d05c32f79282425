#include "Platform/SessionBus/RemotePort.h"

#include "Platform/SessionBus/BusValue.h"
#include "Platform/SessionBus/PortName.h"

#include <unistd.h>

std::shared_ptr<RemotePort> RemotePort::connect(const QString &name, std::chrono::milliseconds limit,
                                                CallWait &wait)
{
    const QString busName = PortName::busName(name);
    auto connection = busName.isEmpty() ? nullptr : BusConnection::open();
    if (!connection)
        return nullptr;
    const QDBusMessage owner =
        wait.waitFor(connection->bus().asyncCall(questionForUser(busName), static_cast<int>(limit.count())));
    if (userInAnswer(owner) != getuid())
        return nullptr;
    return std::shared_ptr<RemotePort>(new RemotePort(std::move(connection), busName, limit));
}

RemotePort::RemotePort(std::shared_ptr<BusConnection> connection, QString busName,
                       std::chrono::milliseconds limit)
    : m_connection(std::move(connection)), m_busName(std::move(busName)), m_limit(limit)
{
}

bool RemotePort::didReceiveDataFromOtherProcess(const QVariantList &message, CallWait &wait)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(m_busName, PortName::ObjectPath, PortName::Interface, PortName::Method);
    // A peer that is not there must not be started by the bus for a message.
    call.setAutoStartService(false);
    call << BusValue::sendable(message);
    const QDBusPendingCall pending = m_connection->bus().asyncCall(call, static_cast<int>(m_limit.count()));
    return wait.waitFor(pending).type() == QDBusMessage::ReplyMessage;
}

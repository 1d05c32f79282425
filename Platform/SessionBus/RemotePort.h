#pragma once

#include "Platform/SessionBus/BusConnection.h"
#include "Platform/SessionBus/CallWait.h"

#include <QVariantList>

/// The way to the named port of another process, on a bus connection of its own.
class RemotePort
{
public:
    /// Looks the port up. Null when there is no bus, nobody has registered the name, or it belongs to another
    /// user. Each call to the peer ends after `limit`.
    [[nodiscard]] static std::shared_ptr<RemotePort> connect(const QString &name,
                                                             std::chrono::milliseconds limit, CallWait &wait);

    /// False once the bus has gone.
    [[nodiscard]] bool isValid() const { return m_connection->isOpen(); }

    /// Hands `message` to the peer, and returns when the peer's method has ended. False on any failure.
    [[nodiscard]] bool didReceiveDataFromOtherProcess(const QVariantList &message, CallWait &wait);

private:
    RemotePort(std::shared_ptr<BusConnection> connection, QString busName, std::chrono::milliseconds limit);

    const std::shared_ptr<BusConnection> m_connection;
    const QString m_busName;
    const std::chrono::milliseconds m_limit;
};

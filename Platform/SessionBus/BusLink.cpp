#include "Platform/SessionBus/BusLink.h"

#include <utility>

BusLink::BusLink(std::chrono::milliseconds retryPace)
{
    m_retry.setSingleShot(true);
    m_retry.setInterval(retryPace);
    connect(&m_retry, &QTimer::timeout, this, &BusLink::connectToBus);
}

void BusLink::start()
{
    connectToBus();
}

void BusLink::stop()
{
    m_retry.stop();
    setConnection(nullptr);
}

std::shared_ptr<BusConnection> BusLink::connection() const
{
    const std::lock_guard lock(m_mutex);
    return m_connection;
}

void BusLink::connectToBus()
{
    auto made = BusConnection::open();
    // The library tells of the end of a connection as if it were a signal from the bus.
    const bool watched = made && made->subscribe({.path = QStringLiteral("/org/freedesktop/DBus/Local"),
                                                  .interface = QStringLiteral("org.freedesktop.DBus.Local"),
                                                  .name = QStringLiteral("Disconnected"),
                                                  .firstArguments = {},
                                                  .signature = {}},
                                                 this, SLOT(busLost()));
    // A bus that went between the two steps has nobody to tell of it.
    if (!watched || !made->isOpen()) {
        if (made)
            made->unsubscribeAll();
        m_retry.start();
        return;
    }
    setConnection(std::move(made));
    Q_EMIT connected();
}

void BusLink::busLost()
{
    setConnection(nullptr);
    m_retry.start();
}

void BusLink::setConnection(std::shared_ptr<BusConnection> connection)
{
    {
        const std::lock_guard lock(m_mutex);
        m_connection.swap(connection);
    }
    if (connection)
        connection->unsubscribeAll();
}

#pragma once

#include "Platform/SessionBus/BusConnection.h"

#include <QObject>
#include <QTimer>

#include <mutex>

/// Holds a connection to the session bus for as long as there is a bus: where none is there, or the one that
/// was has gone, it tries again at a steady pace. While a connection stands nothing polls. Belongs to the
/// thread that made it.
class BusLink : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds RetryPace{10'000};

    explicit BusLink(std::chrono::milliseconds retryPace = RetryPace);
    ~BusLink() override { stop(); }

    /// Makes the first attempt within the call.
    void start();
    /// Lets the connection go, with every subscription on it, and tries no more.
    void stop();

    /// The connection that stands; null while there is no bus. May be called from any thread.
    [[nodiscard]] std::shared_ptr<BusConnection> connection() const;

Q_SIGNALS:
    /// A connection stands that was not there before; nothing is registered or asked for on it yet.
    void connected();

private Q_SLOTS:
    void busLost();

private:
    void connectToBus();
    void setConnection(std::shared_ptr<BusConnection> connection);

    QTimer m_retry;
    mutable std::mutex m_mutex;
    std::shared_ptr<BusConnection> m_connection;
};

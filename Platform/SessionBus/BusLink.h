#pragma once

#include "Platform/SessionBus/BusConnection.h"

#include <QObject>
#include <QTimer>

#include <mutex>

/// Holds a connection to the session bus for as long as there is a bus: where none is there, or the one that
/// was has gone, it tries again at a steady pace. While a connection stands nothing polls, and a bus that hangs
/// holds up nobody. Belongs to the thread that made it.
class BusLink : public QObject
{
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds RetryPace{10'000};

    explicit BusLink(std::chrono::milliseconds retryPace = RetryPace);
    ~BusLink() override;

    /// Makes the first attempt within the call, unless the bus is withheld from this process.
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
    class Home;
    void askAgain();
    void takeAnswer(bool answers);
    void connectTo(std::shared_ptr<BusConnection> made);
    void setConnection(std::shared_ptr<BusConnection> connection);

    QTimer m_retry;
    bool m_wanted = false;
    mutable std::mutex m_mutex;
    std::shared_ptr<BusConnection> m_connection;
    const std::shared_ptr<Home> m_home; // for the thread that asks whether the bus answers
};

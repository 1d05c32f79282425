#pragma once

#include "Tests/Support/ChildProgram.h"

#include <QDBusConnection>
#include <QString>

#include <csignal>

/// A session bus of its own for one test: the one that $DBUS_SESSION_BUS_ADDRESS names while the object lives.
/// It can be taken away and brought back, at the same address.
class PrivateBus
{
public:
    enum class Begin { Running, Stopped };

    /// The socket and the configuration lie in `folder`.
    explicit PrivateBus(const QString &folder, Begin begin = Begin::Running);
    ~PrivateBus();
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    /// Returns when the bus takes connections; fails the test when it does not come.
    void start();
    /// Kills the bus and returns when it is gone.
    void stop();

    /// Has the bus take connections and answer nothing, and answer again. It thaws before it is stopped.
    void freeze() const { m_daemon.signal(SIGSTOP); }
    void thaw() const { m_daemon.signal(SIGCONT); }

    [[nodiscard]] const QString &address() const { return m_address; }

private:
    QString m_address;
    QString m_configuration;
    QByteArray m_addressBefore;
    bool m_hadAddress;
    ChildProgram m_daemon;
};

/// What another program has on that bus: a connection, closed with the object.
class BusClient
{
public:
    explicit BusClient(const PrivateBus &bus);
    ~BusClient();
    BusClient(const BusClient &) = delete;
    BusClient &operator=(const BusClient &) = delete;

    [[nodiscard]] QDBusConnection connection() const { return QDBusConnection(m_label); }

    /// Leaves the bus as a program does that dies.
    void leave();

private:
    QString m_label;
};

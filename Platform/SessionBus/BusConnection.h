#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QStringList>

#include <sys/types.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

/// A connection to the session bus that is nobody else's, closed when the last holder lets go. All calls may
/// come from any thread.
class BusConnection
{
public:
    /// Connects, and greets the bus. Null when there is no bus, or it gives no answer within a second.
    [[nodiscard]] static std::shared_ptr<BusConnection> open();
    /// The same where the caller has just found the bus to answer.
    [[nodiscard]] static std::shared_ptr<BusConnection> openAnswering();
    ~BusConnection();
    BusConnection(const BusConnection &) = delete;
    BusConnection &operator=(const BusConnection &) = delete;

    /// The connection as Qt knows it; keep no copy, for a copy keeps it open.
    [[nodiscard]] QDBusConnection &bus() { return *m_bus; }
    [[nodiscard]] bool isOpen() const { return m_bus->isConnected(); }

    /// A signal on the bus: from anybody, with these first arguments and this signature where they are not
    /// empty.
    struct Signal {
        QString path, interface, name;
        QStringList firstArguments;
        QString signature;
    };
    /// Has `slot`, as SLOT() gives it, called on the thread of `receiver` at each such signal.
    bool subscribe(const Signal &signal, QObject *receiver, const char *slot);
    void unsubscribe(const Signal &signal, QObject *receiver, const char *slot);
    /// Ends every subscription. To be called before a receiver goes, and before the connection does: the
    /// closing of a connection looks, on a thread of the library, at the receivers it still has.
    void unsubscribeAll();
    /// Those of one receiver.
    void unsubscribeFor(const QObject *receiver);

    /// Takes the well-known name `name`, without waiting in line for it.
    enum class Claim {
        Granted,
        Taken,    ///< another connection has it
        NoAnswer, ///< within the limit, or none that says so; it may yet be granted
        BusGone,
    };
    [[nodiscard]] Claim claimName(const QString &name);
    /// Waits for a moment, so that who asks for the name next gets it; not while the process is ending.
    void releaseName(const QString &name);

    /// Returns when the bus has taken everything sent so far on this connection, or after `limit`.
    void flush(std::chrono::milliseconds limit);

    /// A method of the bus itself.
    [[nodiscard]] static QDBusMessage busMethod(const QString &member, const QVariantList &arguments);

private:
    explicit BusConnection(QString label, const QDBusConnection &bus);

    struct Subscription {
        Signal signal;
        QObject *receiver;
        QByteArray slot;
    };
    void disconnect(const Subscription &subscription);

    std::mutex m_mutex;
    std::vector<Subscription> m_subscriptions;
    const QString m_label; // under which Qt keeps the connection
    std::optional<QDBusConnection> m_bus;
};

/// The question to the bus which user `peer`, a unique or well-known name, belongs to; and the user in the
/// answer, none when nobody has that name or no answer came.
[[nodiscard]] QDBusMessage questionForUser(const QString &peer);
[[nodiscard]] std::optional<uid_t> userInAnswer(const QDBusMessage &answer);

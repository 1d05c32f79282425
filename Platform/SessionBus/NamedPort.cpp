#include "Platform/SessionBus/NamedPort.h"

#include "Platform/SessionBus/BusValue.h"
#include "Platform/SessionBus/PortName.h"
#include "Platform/WorkerThread.h"

#include <QDBusError>
#include <QDBusVirtualObject>
#include <QEventLoop>
#include <QTimer>

#include <future>
#include <map>
#include <system_error>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds UserAnswerLimit{3000};

/// The first line of a refusal names no caller and no content.
const QString WrongUser = u"calls of another user are not taken"_s;
const QString WrongShape = u"one array is expected"_s;
const QString Closed = u"the port is closed"_s;
} // namespace

// ---- What the threads share
// ------------------------------------------------------------------------------------

class NamedPort::State : public std::enable_shared_from_this<State>
{
public:
    State(QString name, Handler toCall, const Settings &given)
        : busName(PortName::busName(name)), handler(std::move(toCall)), settings(given), m_name(std::move(name))
    {
    }

    /// The port's thread. Tells `tried` when the first attempt has been made, and serves until the port is
    /// closed.
    void serve(std::promise<void> &tried);
    void close();
    [[nodiscard]] bool isClosed() const
    {
        const std::lock_guard lock(m_mutex);
        return m_closed;
    }
    [[nodiscard]] bool isReachable() const
    {
        const std::lock_guard lock(m_mutex);
        return !m_closed && m_connection && m_connection->isOpen();
    }

    /// Registers object and name on a connection; nothing stays there when that fails.
    enum class Attached { Yes, Closed, NotYet };
    [[nodiscard]] Attached attach(const std::shared_ptr<BusConnection> &connection, QDBusVirtualObject &object);
    void traceOnce(const QString &reason);

    void enterRegister();
    static void closeAll(const QString &name);

    const QString busName;
    const Handler handler;
    const Settings settings;

private:
    void leaveRegister();

    /// The ports that are open in this process, by name.
    struct Register {
        std::mutex mutex;
        std::multimap<QString, std::weak_ptr<State>> ports;
    };
    static Register &openPorts()
    {
        static auto *const ports =
            new Register; // never destroyed: a port's thread may outlive the end of main()
        return *ports;
    }

    const QString m_name;
    mutable std::mutex m_mutex;
    bool m_closed = false;
    std::shared_ptr<BusConnection> m_connection; // with object and name registered on it
    QEventLoop *m_loop = nullptr;                // of the port's thread, while it runs
    QString m_traced;                            // the reason that was traced last; the port's thread only
};

/// The object that callers reach; lives on the port's thread.
class NamedPort::Exported : public QDBusVirtualObject
{
public:
    explicit Exported(State &state) : m_state(state) {}

    /// Bus names of one life of the bus mean nothing in the next.
    void forgetCallers() { m_trustedCaller.clear(); }

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    [[nodiscard]] QDBusMessage answerTo(const QDBusMessage &message, const QDBusConnection &connection);
    [[nodiscard]] bool isTrusted(const QString &caller, const QDBusConnection &connection);

    State &m_state;
    QString m_trustedCaller; // the last one whose user was right; the bus never gives such a name twice
};

// ---- The object
// --------------------------------------------------------------------------------------------------

QString NamedPort::Exported::introspect(const QString &) const
{
    return u"<interface name=\"%1\"><method name=\"%2\"><arg type=\"%3\" direction=\"in\"/>"
           "</method></interface>"_s.arg(PortName::Interface, PortName::Method, PortName::Signature);
}

bool NamedPort::Exported::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    const bool namesPort = message.interface().isEmpty() || message.interface() == PortName::Interface;
    if (!namesPort || message.member() != PortName::Method)
        return false;
    const QDBusMessage answer = answerTo(message, connection);
    if (message.isReplyRequired())
        std::ignore = connection.send(answer); // a caller that has gone waits for none
    return true;
}

QDBusMessage NamedPort::Exported::answerTo(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (m_state.isClosed())
        return message.createErrorReply(QDBusError::Disconnected, Closed);
    if (message.signature() != PortName::Signature)
        return message.createErrorReply(QDBusError::InvalidArgs, WrongShape);
    if (!isTrusted(message.service(), connection))
        return message.createErrorReply(QDBusError::AccessDenied, WrongUser);
    const auto array = BusValue::plainList(message.arguments().constFirst());
    if (!array)
        return message.createErrorReply(QDBusError::LimitsExceeded, WrongShape);
    m_state.handler(*array);
    return message.createReply();
}

bool NamedPort::Exported::isTrusted(const QString &caller, const QDBusConnection &connection)
{
    if (!caller.isEmpty() && caller == m_trustedCaller)
        return true;
    const QDBusMessage answer =
        connection.call(questionForUser(caller), QDBus::Block, static_cast<int>(UserAnswerLimit.count()));
    if (userInAnswer(answer) != m_state.settings.user)
        return false;
    m_trustedCaller = caller;
    return true;
}

// ---- The port's thread
// -------------------------------------------------------------------------------------------

void NamedPort::State::serve(std::promise<void> &tried)
{
    QEventLoop loop;
    Exported object(*this);
    BusLink link(settings.retryPace);
    QTimer retry;
    retry.setSingleShot(true);
    retry.setInterval(settings.retryPace);
    const auto attempt = [&] {
        const auto connection = link.connection();
        if (connection && attach(connection, object) == Attached::NotYet)
            retry.start();
    };
    QObject::connect(&link, &BusLink::connected, &object, [&] {
        object.forgetCallers();
        attempt();
    });
    QObject::connect(&retry, &QTimer::timeout, &object, attempt);
    {
        const std::lock_guard lock(m_mutex);
        m_loop = &loop; // close() queues the end of the loop from now on
    }
    link.start();
    tried.set_value();
    if (!isClosed())
        loop.exec();
    close();
    const std::lock_guard lock(m_mutex);
    m_loop = nullptr;
}

NamedPort::State::Attached NamedPort::State::attach(const std::shared_ptr<BusConnection> &connection,
                                                    QDBusVirtualObject &object)
{
    // The object comes first: who finds the name must find it there.
    if (!connection->bus().registerVirtualObject(PortName::ObjectPath, &object, QDBusConnection::SingleNode))
        return Attached::NotYet;
    const BusConnection::Claim claim = connection->claimName(busName);
    if (claim == BusConnection::Claim::Taken || claim == BusConnection::Claim::NoAnswer) {
        connection->bus().unregisterObject(PortName::ObjectPath);
        traceOnce(claim == BusConnection::Claim::Taken ? u"another process has the name"_s
                                                       : u"the session bus does not answer"_s);
        return isClosed() ? Attached::Closed : Attached::NotYet;
    }
    m_traced.clear();
    std::shared_ptr<BusConnection> lost = connection;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_closed)
            lost.swap(m_connection);
    }
    // What is left over is the connection before this one, or this one where the port was closed meanwhile.
    if (lost)
        lost->bus().unregisterObject(PortName::ObjectPath);
    return lost == connection ? Attached::Closed : Attached::Yes;
}

void NamedPort::State::traceOnce(const QString &reason)
{
    if (m_traced == reason)
        return;
    m_traced = reason;
    settings.trace(reason);
}

// ---- Opening and closing
// -----------------------------------------------------------------------------------------

void NamedPort::State::close()
{
    std::shared_ptr<BusConnection> connection;
    {
        const std::lock_guard lock(m_mutex);
        if (std::exchange(m_closed, true))
            return;
        connection.swap(m_connection);
        // Queued, because a loop that has not begun to run would forget a direct quit().
        if (m_loop)
            QMetaObject::invokeMethod(m_loop, &QEventLoop::quit, Qt::QueuedConnection);
    }
    leaveRegister();
    if (connection) {
        connection->bus().unregisterObject(PortName::ObjectPath);
        connection->releaseName(busName);
    }
}

void NamedPort::State::enterRegister()
{
    Register &open = openPorts();
    const std::lock_guard lock(open.mutex);
    open.ports.emplace(m_name, weak_from_this());
}

void NamedPort::State::leaveRegister()
{
    Register &open = openPorts();
    const std::lock_guard lock(open.mutex);
    std::erase_if(open.ports, [this](const auto &port) {
        return port.first == m_name && port.second.lock().get() == this;
    });
}

void NamedPort::State::closeAll(const QString &name)
{
    std::vector<std::shared_ptr<State>> found;
    {
        Register &open = openPorts();
        const std::lock_guard lock(open.mutex);
        const auto [first, last] = open.ports.equal_range(name);
        for (auto port = first; port != last; ++port) {
            if (auto state = port->second.lock())
                found.push_back(std::move(state));
        }
    }
    for (const auto &state : found)
        state->close();
}

std::unique_ptr<NamedPort> NamedPort::open(const QString &name, Handler handler, const Settings &settings)
{
    const auto state = std::make_shared<State>(name, std::move(handler), settings);
    if (state->busName.isEmpty())
        return nullptr;
    const auto tried = std::make_shared<std::promise<void>>();
    const auto outcome = tried->get_future();
    state->enterRegister();
    try {
        startWorkerThread("corvane-port", [state, tried] { state->serve(*tried); });
    } catch (const std::system_error &) {
        state->close();
        return nullptr;
    }
    std::ignore = outcome.wait_for(OpenPatience); // a port that isn't open by then goes on trying
    return std::unique_ptr<NamedPort>(new NamedPort(state));
}

NamedPort::~NamedPort()
{
    m_state->close();
}

bool NamedPort::isReachable() const
{
    return m_state->isReachable();
}

void NamedPort::closeAll(const QString &name)
{
    State::closeAll(name);
}

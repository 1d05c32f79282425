#include "Platform/SessionBus/BusConnection.h"

#include "Platform/BusAddress.h"
#include "Platform/Ending.h"
#include "Platform/SessionBus/BusProbe.h"

#include <algorithm>
#include <atomic>

using namespace Qt::StringLiterals;

namespace
{
constexpr std::chrono::milliseconds NameLimit{3000};
constexpr std::chrono::milliseconds ReleaseLimit{250};

// The answers of the bus to a request for a name, and the flag not to wait for it, as in the D-Bus
// specification, "Message Bus Messages".
constexpr uint DoNotQueue = 0x4;
constexpr uint PrimaryOwner = 1;
constexpr uint Exists = 3;
constexpr uint AlreadyOwner = 4;
} // namespace

std::shared_ptr<BusConnection> BusConnection::open()
{
    const auto address = BusAddress::current();
    if (!address || BusProbe::ask(*address, BusProbe::RetryLimit) != BusProbe::Answer::Answers)
        return nullptr;
    return openAnswering();
}

std::shared_ptr<BusConnection> BusConnection::openAnswering()
{
    // Never twice the same label: Qt answers a known one with the connection that it has, dead or not.
    static std::atomic<quint64> opened = 0;
    const auto address = BusAddress::current();
    if (!address)
        return nullptr;
    const QString label = u"corvane-bus-%1"_s.arg(++opened);
    const std::shared_ptr<BusConnection> made(
        new BusConnection(label, QDBusConnection::connectToBus(*address, label)));
    return made->isOpen() ? made : nullptr;
}

BusConnection::BusConnection(QString label, const QDBusConnection &bus) : m_label(std::move(label)), m_bus(bus)
{
}

BusConnection::~BusConnection()
{
    m_bus.reset();
    QDBusConnection::disconnectFromBus(m_label);
}

bool BusConnection::subscribe(const Signal &signal, QObject *receiver, const char *slot)
{
    if (!m_bus->connect(QString(), signal.path, signal.interface, signal.name, signal.firstArguments,
                        signal.signature, receiver, slot))
        return false;
    const std::lock_guard lock(m_mutex);
    m_subscriptions.push_back({signal, receiver, slot});
    return true;
}

void BusConnection::unsubscribe(const Signal &signal, QObject *receiver, const char *slot)
{
    const Subscription ended{signal, receiver, slot};
    disconnect(ended);
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_subscriptions, [&](const Subscription &subscription) {
        return subscription.receiver == receiver && subscription.signal.name == signal.name &&
               subscription.signal.firstArguments == signal.firstArguments;
    });
}

void BusConnection::unsubscribeAll()
{
    std::vector<Subscription> ended;
    {
        const std::lock_guard lock(m_mutex);
        ended.swap(m_subscriptions);
    }
    for (const Subscription &subscription : ended)
        disconnect(subscription);
}

void BusConnection::unsubscribeFor(const QObject *receiver)
{
    std::vector<Subscription> ended;
    {
        const std::lock_guard lock(m_mutex);
        const auto others = std::stable_partition(
            m_subscriptions.begin(), m_subscriptions.end(),
            [receiver](const Subscription &subscription) { return subscription.receiver != receiver; });
        ended.assign(others, m_subscriptions.end());
        m_subscriptions.erase(others, m_subscriptions.end());
    }
    for (const Subscription &subscription : ended)
        disconnect(subscription);
}

void BusConnection::disconnect(const Subscription &subscription)
{
    const Signal &signal = subscription.signal;
    m_bus->disconnect(QString(), signal.path, signal.interface, signal.name, signal.firstArguments,
                      signal.signature, subscription.receiver, subscription.slot.constData());
}

BusConnection::Claim BusConnection::claimName(const QString &name)
{
    const QDBusMessage reply = m_bus->call(busMethod(u"RequestName"_s, {name, DoNotQueue}), QDBus::Block,
                                           static_cast<int>(NameLimit.count()));
    const uint answer = reply.arguments().value(0).toUInt();
    if (reply.type() == QDBusMessage::ReplyMessage && (answer == PrimaryOwner || answer == AlreadyOwner))
        return Claim::Granted;
    if (!isOpen())
        return Claim::BusGone;
    return answer == Exists ? Claim::Taken : Claim::NoAnswer;
}

void BusConnection::releaseName(const QString &name)
{
    if (!Ending::hasBegun()) // the bus takes the name back with the connection
        m_bus->call(busMethod(u"ReleaseName"_s, {name}), QDBus::Block, static_cast<int>(ReleaseLimit.count()));
}

void BusConnection::flush(std::chrono::milliseconds limit)
{
    if (Ending::hasBegun())
        return;
    // A connection keeps its order, so an answer means that what went before has arrived.
    m_bus->call(busMethod(u"GetId"_s, {}), QDBus::Block, static_cast<int>(limit.count()));
}

QDBusMessage BusConnection::busMethod(const QString &member, const QVariantList &arguments)
{
    QDBusMessage message = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                          u"org.freedesktop.DBus"_s, member);
    message.setArguments(arguments);
    return message;
}

QDBusMessage questionForUser(const QString &peer)
{
    return BusConnection::busMethod(u"GetConnectionUnixUser"_s, {peer});
}

std::optional<uid_t> userInAnswer(const QDBusMessage &answer)
{
    if (answer.type() != QDBusMessage::ReplyMessage || answer.signature() != "u"_L1)
        return std::nullopt;
    return answer.arguments().constFirst().toUInt();
}

#include "Messaging/DaemonChannel.h"

#include "Platform/Limits.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <cstring>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 HeaderTag = 76565;
constexpr qint64 PayloadTag = 0;
constexpr qsizetype HeaderBytes = sizeof(quint64);
constexpr GCDAsyncSocket::Seconds ConnectTimeout{5.0};

/// True for a value that JSON can hold as it is. QJsonValue would turn any other into a null or a text.
bool isSerialisable(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        const auto map = value.toMap();
        return std::all_of(map.begin(), map.end(), isSerialisable);
    }
    case QMetaType::QVariantList: {
        const auto list = value.toList();
        return std::all_of(list.begin(), list.end(), isSerialisable);
    }
    case QMetaType::Double:
        return std::isfinite(value.toDouble());
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::QString:
    case QMetaType::QStringList:
    case QMetaType::Nullptr:
        return true;
    default:
        return false;
    }
}
} // namespace

/// Passes on what the present socket tells, and nothing once the channel is gone. An object of its own, because
/// the owner may destroy the channel from within a call that a socket is still making.
class DaemonChannel::Ear : public GCDAsyncSocketDelegate
{
public:
    explicit Ear(DaemonChannel *owner) : channel(owner) {}

    void socketDidConnectToHost(GCDAsyncSocket &socket, const QString &, quint16) override
    {
        if (isFor(socket) && !channel->m_leaves)
            channel->didConnect();
    }
    void socketDidReadData(GCDAsyncSocket &socket, QByteArray data, qint64 tag) override
    {
        if (!isFor(socket) || channel->m_leaves)
            return;
        if (tag == HeaderTag)
            channel->didReadHeader(data);
        else
            channel->didReadPayload(std::move(data));
    }
    void socketDidDisconnectWithError(GCDAsyncSocket &socket, const std::optional<SocketError> &) override
    {
        if (isFor(socket))
            channel->didDisconnect();
    }

    DaemonChannel *channel; // null once it is gone

private:
    [[nodiscard]] bool isFor(const GCDAsyncSocket &socket) const
    {
        return channel && channel->m_socket.get() == &socket;
    }
};

DaemonChannel::DaemonChannel(DaemonChannelOwner &owner, Clock &clock, PortSource port, PeerOwners peers)
    : m_owner(owner), m_clock(clock), m_portSource(std::move(port)), m_peers(std::move(peers)),
      m_ear(std::make_shared<Ear>(this))
{
}

DaemonChannel::~DaemonChannel()
{
    m_ear->channel = nullptr;
}

// ---- Looking for the daemon ------------------------------------------------------------------------------

void DaemonChannel::start()
{
    beginQuickPace();
    connectToDemon();
}

void DaemonChannel::connectToDemon()
{
    m_retry.reset();
    const auto port = m_socket ? std::nullopt : usablePort();
    if (!port)
        return;
    m_socket = GCDAsyncSocket::create(m_ear, DispatchQueue::main());
    m_port = *port;
    m_socketStarted = m_socket->connectToHost(u"127.0.0.1"_s, *port, ConnectTimeout, nullptr);
    if (!m_socketStarted) {
        m_socket.reset();
        tryAgainLater();
    }
}

std::optional<quint16> DaemonChannel::usablePort() const
{
    const auto port = m_portSource();
    return port && *port >= 1 && *port <= 65535 ? std::optional(static_cast<quint16>(*port)) : std::nullopt;
}

void DaemonChannel::beginQuickPace()
{
    m_isQuick = true;
    m_quickEnd = m_clock.start(QuickPeriod, Clock::Repeat::Once, [this] { m_isQuick = false; });
}

void DaemonChannel::tryAgainLater()
{
    m_retryIsQuick = m_isQuick;
    m_retry =
        m_clock.start(m_isQuick ? QuickDelay : EasyDelay, Clock::Repeat::Once, [this] { connectToDemon(); });
}

void DaemonChannel::portFileDidChange()
{
    beginQuickPace();
    // An attempt that is due within the quick pace stays due: changes that come faster must not put it off.
    if (m_retry && !m_retryIsQuick)
        tryAgainLater();
    look();
}

void DaemonChannel::look()
{
    if (!m_socket) {
        if (!m_retry)
            connectToDemon();
        return;
    }
    // A file that is being rewritten, or gone, says nothing against the connection that stands.
    const auto port = usablePort();
    if (port && *port != m_port)
        leave();
    else
        compareListener();
}

// ---- Messages --------------------------------------------------------------------------------------------

void DaemonChannel::sendData(const QVariantMap &message, qint64 tag)
{
    connectToDemon();
    if (!m_socketStarted || !isSerialisable(message))
        return;
    const QByteArray payload =
        QJsonDocument(QJsonObject::fromVariantMap(message)).toJson(QJsonDocument::Compact);
    const auto size = static_cast<quint64>(payload.size());
    m_socket->writeData(QByteArray(reinterpret_cast<const char *>(&size), HeaderBytes),
                        GCDAsyncSocket::NoTimeout, HeaderTag);
    m_socket->writeData(payload, GCDAsyncSocket::NoTimeout, tag);
}

bool DaemonChannel::isConnected() const
{
    return m_socket && m_socket->isConnected();
}

void DaemonChannel::didConnect()
{
    const auto ear = m_ear;
    m_connection = Connection{.ownPort = m_socket->localPort()};
    m_connection->lasting =
        m_clock.start(LastingConnection, Clock::Repeat::Once, [this] { m_connection->hasLasted = true; });
    settleOwner();
    if (m_leaves)
        return;
    m_owner.channelDidConnect();
    if (!ear->channel)
        return;
    const QVariantMap details = m_owner.pingDetails();
    if (!ear->channel)
        return;
    send(OutboundMessages::pingFromMonitor(details));
    readNextHeader();
}

void DaemonChannel::readNextHeader()
{
    if (m_socket)
        m_socket->readDataToLength(HeaderBytes, GCDAsyncSocket::NoTimeout, HeaderTag);
}

void DaemonChannel::didReadHeader(const QByteArray &header)
{
    quint64 size = 0;
    std::memcpy(&size, header.constData(), sizeof size);
    if (size > 0 && size <= Limits::FrameBytes) {
        m_socket->readDataToLength(static_cast<qsizetype>(size), GCDAsyncSocket::NoTimeout, PayloadTag);
        return;
    }
    const auto ear = m_ear;
    const auto socket = m_socket;
    m_owner.didRefusePayload(size == 0 ? u"an empty frame"_s : u"a frame of %1 bytes"_s.arg(size));
    if (!ear->channel || socket != m_socket)
        return;
    if (size == 0)
        readNextHeader();
    else
        socket->disconnect();
}

void DaemonChannel::didReadPayload(QByteArray payload)
{
    // The socket that makes this call keeps both until it returns.
    const Ear *const ear = m_ear.get();
    const GCDAsyncSocket *const socket = m_socket.get();
    // Who sends has accepted the connection, so by now the kernel knows who that is.
    if (!std::exchange(m_connection->hasHeard, true) && !m_connection->owner)
        settleOwner();
    if (m_leaves)
        return;
    QString reason;
    if (const auto message = m_reader.read(std::move(payload), &reason); !message)
        m_owner.didRefusePayload(reason);
    else if (message->isOperationProgress())
        m_owner.didReceiveProgress(*message);
    else
        m_owner.didReceiveMessage(message->argumentList());
    // Read on only when the owner is done, and only if that has not ended the channel or brought a new socket.
    if (ear->channel && socket == m_socket.get())
        readNextHeader();
}

void DaemonChannel::didDisconnect()
{
    m_socketStarted = false;
    if (m_connection && m_connection->hasLasted)
        beginQuickPace();
    else if (m_connection && !m_leaves)
        m_isQuick = false;
    // Left alone is only who shows the pair of owners again at once.
    if (!m_leaves)
        m_accepted.reset();
    m_leaves = false;
    m_connection.reset();
    const auto ear = m_ear;
    m_owner.channelDidDisconnect();
    if (!ear->channel)
        return;
    m_socket.reset();
    tryAgainLater();
}

// ---- The other end ---------------------------------------------------------------------------------------

bool DaemonChannel::isPeerTrusted() const
{
    return m_connection && SocketOwner::isTrusted(m_connection->owner);
}

void DaemonChannel::settleOwner()
{
    Connection &connection = *m_connection;
    connection.owner = m_peers.ofConnection(m_port, connection.ownPort);
    connection.nextLook.reset();
    if (connection.owner) {
        compareListener();
    } else {
        connection.nextLook =
            m_clock.start(connection.ownerPause, Clock::Repeat::Once, [this] { settleOwner(); });
        connection.ownerPause = std::min(2 * connection.ownerPause, ListenerPeriod);
    }
}

/// Ends the connection when its port has come to be listened at by somebody else than who holds the connection.
/// A daemon whose listener was made by another user for it shows the same pair again at once, and is left in
/// peace.
void DaemonChannel::compareListener()
{
    if (!m_connection || !m_connection->owner)
        return;
    const uid_t owner = *m_connection->owner;
    const auto listener = m_peers.ofListener(m_port);
    if (listener == owner) {
        m_accepted.reset();
    } else if (listener && m_accepted != Owners(owner, *listener)) {
        m_accepted = Owners(owner, *listener);
        leave();
        return;
    }
    // Who listens can change only after the listener has gone. So while there is one its end is waited for, and
    // nothing is asked in vain.
    auto &connection = *m_connection;
    connection.nextLook.reset();
    if (!listener) {
        connection.listenerWatch.reset();
    } else if (!connection.listenerWatch) {
        connection.listenerWatch = m_peers.watchEnds(m_port, [this] { compareListener(); });
        if (connection.listenerWatch)
            return compareListener(); // it may have gone just before
    }
    if (!connection.listenerWatch)
        connection.nextLook = m_clock.start(ListenerPeriod, Clock::Repeat::Once, [this] { compareListener(); });
}

void DaemonChannel::leave()
{
    m_leaves = true; // what is still on its way from there is no longer taken
    m_socketStarted = false;
    beginQuickPace();
    m_socket->disconnect();
}

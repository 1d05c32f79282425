#include "Messaging/DaemonChannel.h"

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
        if (isFor(socket))
            channel->didConnect();
    }
    void socketDidReadData(GCDAsyncSocket &socket, QByteArray data, qint64 tag) override
    {
        if (!isFor(socket))
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

DaemonChannel::DaemonChannel(DaemonChannelOwner &owner, Clock &clock, PortSource port)
    : m_owner(owner), m_clock(clock), m_port(std::move(port)), m_ear(std::make_shared<Ear>(this))
{
}

DaemonChannel::~DaemonChannel()
{
    m_ear->channel = nullptr;
}

void DaemonChannel::start()
{
    makeSocket();
    connectToDemon();
}

void DaemonChannel::makeSocket()
{
    m_socket = GCDAsyncSocket::create(m_ear, DispatchQueue::main());
    m_socketStarted = false;
}

void DaemonChannel::connectToDemon()
{
    const auto port = m_port();
    if (!m_socket || !port || *port < 1 || *port > 65535)
        return;
    if (m_socket->connectToHost(u"127.0.0.1"_s, static_cast<quint16>(*port), ConnectTimeout, nullptr))
        m_socketStarted = true;
}

void DaemonChannel::sendData(const QVariantMap &message, qint64 tag)
{
    if (!m_socket)
        start();
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
    if (size > 0 && size <= MaxFrameBytes) {
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
    const auto ear = m_ear;
    const auto socket = m_socket;
    QString reason;
    if (const auto message = m_reader.read(std::move(payload), &reason); !message)
        m_owner.didRefusePayload(reason);
    else if (message->isOperationProgress())
        m_owner.didReceiveProgress(*message);
    else
        m_owner.didReceiveMessage(message->argumentList());
    // Read on only when the owner is done, and only if that has not ended the channel or brought a new socket.
    if (ear->channel && socket == m_socket)
        readNextHeader();
}

void DaemonChannel::didDisconnect()
{
    m_socketStarted = false;
    const auto ear = m_ear;
    m_owner.channelDidDisconnect();
    if (!ear->channel)
        return;
    m_socket.reset();
    m_reconnect = m_clock.start(ReconnectDelay, Clock::Repeat::Once, [this] {
        if (!m_socket) // a message sent meanwhile has made one
            start();
    });
}

#pragma once

#include "Messaging/DaemonMessage.h"
#include "Messaging/GCDAsyncSocket.h"
#include "Messaging/OutboundMessages.h"
#include "Platform/Clock.h"

#include <functional>
#include <memory>
#include <optional>

/// What the channel needs of whoever owns it. All calls come on the main thread, and each may destroy the
/// channel.
class DaemonChannelOwner
{
public:
    virtual ~DaemonChannelOwner() = default;

    /// A connection stands; nothing has been sent or read on it by the channel.
    virtual void channelDidConnect() = 0;
    /// The `data` of the first message, asked for once for each connection, right after channelDidConnect():
    /// the place to read the user record anew, and to forget the operations in progress that it names.
    [[nodiscard]] virtual QVariantMap pingDetails() = 0;
    /// A connection is lost, or an attempt at one has failed. Comes at the pace of the attempts.
    virtual void channelDidDisconnect() = 0;
    /// A report of a running operation.
    virtual void didReceiveProgress(const DaemonMessage &message) = 0;
    /// Any other message, as the arguments of the dispatcher.
    virtual void didReceiveMessage(const QVariantList &arguments) = 0;
    /// A frame was skipped, or one too long has ended the connection; `reason` is for a trace.
    virtual void didRefusePayload(const QString &reason) = 0;
};

/// The channel to the backup daemon on this machine. Frames in both directions: the length of the payload, 8
/// bytes in host byte order, then the payload, one JSON object in UTF-8.
///
/// A lost connection is replaced without end: 10 ms after each loss or failed attempt a new socket object tries
/// the port that is published by then. Main thread only.
class DaemonChannel
{
public:
    /// The port that the daemon publishes at the moment; empty when there is none to be read.
    using PortSource = std::function<std::optional<qint64>()>;

    /// A frame that claims more ends the connection.
    static constexpr quint64 MaxFrameBytes = 16 * 1024 * 1024;
    static constexpr std::chrono::milliseconds ReconnectDelay{10};

    /// `owner` and `clock` must outlive the channel.
    DaemonChannel(DaemonChannelOwner &owner, Clock &clock, PortSource port);
    ~DaemonChannel();
    DaemonChannel(const DaemonChannel &) = delete;
    DaemonChannel &operator=(const DaemonChannel &) = delete;

    /// Makes the first socket and connects.
    void start();
    /// Connects the socket that is there to the published port. With no socket, or no port from 1 to 65535,
    /// nothing happens, and nothing is tried again.
    void connectToDemon();
    /// Sends one message, once the connection opens if need be; makes a socket and connects when there is none.
    /// A message with a value that JSON does not know is dropped, and so is one that nothing will take because
    /// no port was published when the channel last looked.
    void sendData(const QVariantMap &message, qint64 tag);
    void send(const OutboundMessage &outbound) { sendData(outbound.message, outbound.tag); }
    [[nodiscard]] bool isConnected() const;

private:
    class Ear;

    void didConnect();
    void didDisconnect();
    void makeSocket();
    void readNextHeader();
    void didReadHeader(const QByteArray &header);
    void didReadPayload(QByteArray payload);

    DaemonChannelOwner &m_owner;
    Clock &m_clock;
    const PortSource m_port;
    DaemonMessageReader m_reader;
    std::shared_ptr<GCDAsyncSocket> m_socket; // replaced, never used again, after a disconnect
    bool m_socketStarted = false;             // the socket connects or is connected, so it takes messages
    std::unique_ptr<Clock::Timer> m_reconnect;
    std::shared_ptr<Ear>
        m_ear; // hears the sockets; outlives the channel while one of them is telling something
};

#pragma once

#include "Messaging/DaemonMessage.h"
#include "Messaging/GCDAsyncSocket.h"
#include "Messaging/OutboundMessages.h"
#include "Platform/Clock.h"
#include "Platform/SocketEndWatch.h"
#include "Platform/SocketOwner.h"

#include <functional>
#include <memory>
#include <optional>
#include <utility>

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

/// What the kernel tells of the sockets of this machine; given, so that a test can tell something else.
struct PeerOwners {
    std::function<std::optional<uid_t>(quint16 peerPort, quint16 ownPort)> ofConnection =
        SocketOwner::connectionOwner;
    std::function<std::optional<uid_t>(quint16 port)> ofListener = SocketOwner::listenerOwner;
    /// Calls `ended` when sockets at that port have gone, for as long as the answer is kept; null where that
    /// can't be told.
    std::function<std::shared_ptr<void>(quint16 port, std::function<void()> ended)> watchEnds =
        SocketEndWatch::start;
};

/// The channel to the backup daemon on this machine. Frames in both directions: the length of the payload, 8
/// bytes in host byte order, then the payload, one JSON object in UTF-8.
///
/// While a usable port is published and nobody answers, a new socket tries it again and again: quickly for a
/// moment after a start, a change of the port file and the loss of a connection that had lasted, else at an
/// easy pace. While none is published the daemon is not there yet: the channel is idle, without a socket, and
/// tells nothing.
///
/// Whether the process at the other end is trusted is settled once for each connection, as soon as it has been
/// accepted, and ends with it. Main thread only.
class DaemonChannel
{
public:
    /// The port that the daemon publishes at the moment; empty when there is none to be read.
    using PortSource = std::function<std::optional<qint64>()>;

    static constexpr std::chrono::milliseconds QuickDelay{10};
    static constexpr std::chrono::milliseconds EasyDelay{100};
    static constexpr std::chrono::milliseconds QuickPeriod{3000}; ///< then the pace is easy
    /// A connection that ends sooner was no daemon at work: its port is tried again at the easy pace.
    static constexpr std::chrono::milliseconds LastingConnection{1000};
    /// Between two looks at who listens now, where no event tells.
    static constexpr std::chrono::milliseconds ListenerPeriod{500};
    /// The first pause before asking again who has accepted the connection; each further one is twice as long,
    /// up to ListenerPeriod. A stranger who leaves a connection waiting must not outwait the question.
    static constexpr std::chrono::milliseconds OwnerDelay{1};

    /// `owner` and `clock` must outlive the channel.
    DaemonChannel(DaemonChannelOwner &owner, Clock &clock, PortSource port, PeerOwners peers = {});
    ~DaemonChannel();
    DaemonChannel(const DaemonChannel &) = delete;
    DaemonChannel &operator=(const DaemonChannel &) = delete;

    /// Connects, and begins to look for the daemon.
    void start();
    /// Makes a socket and connects it to the published port, unless there is one; idle where none is published.
    void connectToDemon();
    /// Told when the port file may have changed: what it names now is tried, in the place of another port.
    void portFileDidChange();
    /// To be called every few seconds: finds what no event has told.
    void look();

    /// Sends one message, once the connection opens if need be; makes a socket and connects when there is none.
    /// A message with a value that JSON does not know is dropped, and so is each while no port is published.
    void sendData(const QVariantMap &message, qint64 tag);
    void send(const OutboundMessage &outbound) { sendData(outbound.message, outbound.tag); }
    [[nodiscard]] bool isConnected() const;
    /// True when the process at the other end of the present connection belongs to root or to this user.
    [[nodiscard]] bool isPeerTrusted() const;
    /// True once the kernel has told whose that process is.
    [[nodiscard]] bool isPeerKnown() const { return m_connection && m_connection->owner; }

private:
    class Ear;
    /// The present connection.
    struct Connection {
        quint16 ownPort = 0;
        std::optional<uid_t> owner;                        ///< of its other end; empty until that is settled
        std::chrono::milliseconds ownerPause = OwnerDelay; ///< before it is asked for again
        bool hasLasted = false;
        bool hasHeard = false; ///< a whole message has come
        std::unique_ptr<Clock::Timer> lasting;
        std::unique_ptr<Clock::Timer> nextLook;
        std::shared_ptr<void> listenerWatch; ///< stands while the listener is as it should be
    };
    /// The owners of a connection's other end and of the listener at its port.
    using Owners = std::pair<uid_t, uid_t>;

    void didConnect();
    void didDisconnect();
    void readNextHeader();
    void didReadHeader(const QByteArray &header);
    void didReadPayload(QByteArray payload);

    /// @name Looking for the daemon
    [[nodiscard]] std::optional<quint16> usablePort() const;
    void beginQuickPace();
    void tryAgainLater();

    /// @name The other end
    void settleOwner();
    void compareListener();
    void leave();

    DaemonChannelOwner &m_owner;
    Clock &m_clock;
    const PortSource m_portSource;
    const PeerOwners m_peers;
    DaemonMessageReader m_reader;
    std::shared_ptr<GCDAsyncSocket> m_socket; // replaced, never used again, after a disconnect
    bool m_socketStarted = false;             // the socket connects or is connected, so it takes messages
    quint16 m_port = 0;                       // of the socket
    std::optional<Connection> m_connection;
    std::optional<Owners> m_accepted; // a pair of different owners that a second connection has shown as well
    std::unique_ptr<Clock::Timer> m_retry; // runs between two attempts
    bool m_retryIsQuick = false;
    bool m_isQuick = false;
    bool m_leaves = false; // the end of the connection is our own doing
    std::unique_ptr<Clock::Timer> m_quickEnd;
    std::shared_ptr<Ear>
        m_ear; // hears the sockets; outlives the channel while one of them is telling something
};

#pragma once

#include "Messaging/AsyncSocketPackets.h"
#include "Messaging/PreBuffer.h"
#include "Messaging/SocketAddress.h"
#include "Messaging/SocketError.h"
#include "Platform/DispatchQueue.h"
#include "Platform/Reactor.h"

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class GCDAsyncSocket;

/// Hears what becomes of a socket's calls, in the order in which it happened, on the delegate queue. Each call
/// is optional, and may drop the socket.
class GCDAsyncSocketDelegate
{
public:
    virtual ~GCDAsyncSocketDelegate() = default;

    /// `host` is the address that answered, as digits.
    virtual void socketDidConnectToHost(GCDAsyncSocket &, const QString & /*host*/, quint16 /*port*/) {}
    /// `data` is handed over, with GCDAsyncReadPacket::TailRoom bytes of capacity behind it.
    virtual void socketDidReadData(GCDAsyncSocket &, QByteArray /*data*/, qint64 /*tag*/) {}
    virtual void socketDidWriteDataWithTag(GCDAsyncSocket &, qint64 /*tag*/) {}
    /// A read or write has taken `elapsed`; a positive answer gives it that much more time.
    virtual SocketSeconds socketShouldTimeoutReadWithTag(GCDAsyncSocket &, qint64 /*tag*/,
                                                         SocketSeconds /*elapsed*/, qsizetype /*bytesDone*/)
    {
        return {};
    }
    virtual SocketSeconds socketShouldTimeoutWriteWithTag(GCDAsyncSocket &, qint64 /*tag*/,
                                                          SocketSeconds /*elapsed*/, qsizetype /*bytesDone*/)
    {
        return {};
    }
    /// The end, once for each started connection; no error after a local disconnect. What was queued is
    /// dropped.
    virtual void socketDidDisconnectWithError(GCDAsyncSocket &, const std::optional<SocketError> & /*error*/) {}
};

/// A TCP client that never blocks its caller. Reads and writes are queued, each with a tag and a time-out, may
/// be queued before the connection opens, and are answered as calls on the delegate.
///
/// All state is touched on one private serial queue. It is borrowed by whoever calls, so a call on an idle
/// socket is carried out at once, on the calling thread, and no thread is woken for it. All calls may come from
/// any thread.
///
/// Contents: calls, delegate, closing (GCDAsyncSocket.cpp), connecting (GCDAsyncSocket+Connecting.cpp), reads,
/// writes and time-outs (GCDAsyncSocket+Streams.cpp).
class GCDAsyncSocket : public std::enable_shared_from_this<GCDAsyncSocket>
{
    struct Private {
        explicit Private() = default;
    };

public:
    using Seconds = SocketSeconds;
    static constexpr Seconds NoTimeout{-1};
    /// How long the preferred address family has the field to itself.
    static constexpr Seconds AlternateAddressDelay{0.3};

    /// A socket that is not started. The delegate is held weakly; a `socketQueue` of the caller's takes the
    /// place of the private one.
    static std::shared_ptr<GCDAsyncSocket> create(std::weak_ptr<GCDAsyncSocketDelegate> delegate,
                                                  std::optional<DispatchQueue> delegateQueue,
                                                  std::optional<DispatchQueue> socketQueue = std::nullopt);
    GCDAsyncSocket(Private, std::weak_ptr<GCDAsyncSocketDelegate> delegate,
                   std::optional<DispatchQueue> delegateQueue, std::optional<DispatchQueue> socketQueue);
    /// Closes what is open; the delegate hears nothing.
    ~GCDAsyncSocket() = default;

    /// Starts to connect and returns true; the outcome arrives later. False, with the reason in `error` (may be
    /// null), when the call is refused: no delegate, no delegate queue, in use already, an empty host, or both
    /// address families switched off.
    bool connectToHost(const QString &host, quint16 port, Seconds timeout, SocketError *error);

    /// Reads exactly `length` bytes. A length under 1 is ignored.
    void readDataToLength(qsizetype length, Seconds timeout, qint64 tag);
    /// Reads up to and including `terminator`; ends the connection when `maxLength` bytes (0 for no limit) hold
    /// none. An empty terminator, and a limit that cannot hold it, are ignored.
    void readDataToData(const QByteArray &terminator, Seconds timeout, qsizetype maxLength, qint64 tag);
    /// Reads whatever is available, at least one byte.
    void readDataWithTimeout(Seconds timeout, qint64 tag);
    /// Writes all of `data`. Empty data is ignored.
    void writeData(const QByteArray &data, Seconds timeout, qint64 tag);

    /// Closes at once; what is queued is dropped. Does nothing on a socket that is not started.
    void disconnect();
    /// Closes once every read that is queued by now has been served.
    void disconnectAfterReading();
    /// Closes once every write that is queued by now has been taken by the system.
    void disconnectAfterWriting();
    [[nodiscard]] bool isConnected() const;
    /// The port of our end of an IPv4 connection; 0 without one.
    [[nodiscard]] quint16 localPort() const;

    /// Calls that are on their way still reach the old delegate.
    void setDelegate(std::weak_ptr<GCDAsyncSocketDelegate> delegate);
    /// Both families are on at first, IPv4 preferred. Counts from the next connectToHost().
    void setIPv4Enabled(bool enabled);
    void setIPv6Enabled(bool enabled);
    void setIPv4PreferredOverIPv6(bool preferred);

private:
    /// Owns a descriptor and watches it.
    class Descriptor
    {
    public:
        Descriptor() = default;
        explicit Descriptor(int fd) : m_fd(fd) {}
        Descriptor(Descriptor &&other) noexcept;
        Descriptor &operator=(Descriptor &&other) noexcept;
        ~Descriptor();

        [[nodiscard]] int fd() const { return m_fd; }
        std::unique_ptr<Reactor::Watch> watch;

    private:
        int m_fd = -1;
    };
    struct Attempt {
        SocketAddress address;
        Descriptor descriptor;
    };
    struct Flags {
        bool started = false;
        bool connected = false;
        bool readsPaused = false; // until the delegate has said whether a late read gets more time
        bool writesPaused = false;
        bool disconnectAfterReads = false;
        bool disconnectAfterWrites = false;
        bool readWaits = false;  // the current read has found the socket empty
        bool writeWaits = false; // the current write has found it full
        bool watchesEnd = false; // nobody reads, but the peer's close should not go unseen
        bool mayHaveBytes = true;
    };
    struct Config {
        bool ipv4 = true;
        bool ipv6 = true;
        bool preferIPv4 = true;
    };
    enum class Progress { Complete, Waits, Closed };
    static constexpr int MaxFollowUps = 3;
    static constexpr QLatin1StringView WatchCall{"Error in epoll_ctl() function"};
    /// Stands while the delegate is told of something. A read that is served within that call, on its thread,
    /// is told as soon as the call has returned: a header and what it announces take one trip through the
    /// delegate queue. Only a few are, so that others get their turn there.
    struct FollowUp {
        GCDAsyncSocket *socket = nullptr;
        FollowUp *outer = nullptr; ///< of the call that has led to this one by a loop of events of its own
        bool isOpen = true;
        std::weak_ptr<GCDAsyncSocketDelegate> delegate;
        std::optional<QByteArray> data;
        qint64 tag = 0;
    };

    /// A closure for other threads: it runs `call(socket, arguments...)` on the socket queue, unless the socket
    /// or the connection of now is gone by then.
    template<class Call>
    auto onSocketQueue(Call call);
    std::unique_ptr<Reactor::Timer> startTimer(Seconds delay, std::function<void(GCDAsyncSocket &)> fire);
    template<class Call>
    void tellDelegate(Call call);
    template<class Call>
    void tellNow(const std::weak_ptr<GCDAsyncSocketDelegate> &delegate, Call &call);
    [[nodiscard]] bool tellAfterPresentCall(QByteArray &data, qint64 tag);
    void tellFollowUp(FollowUp &followUp);

    /// @name Closing, in GCDAsyncSocket.cpp
    void closeWithError(std::optional<SocketError> error);
    void closeWhenDone();

    /// @name Connecting, in GCDAsyncSocket+Connecting.cpp
    std::optional<SocketError> refusal(const QString &host) const;
    void lookUp(const QString &host, quint16 port);
    void startConnecting(const SocketAddresses &addresses);
    void tryNextAddress();
    std::optional<SocketError> tryAddress(const SocketAddress &address);
    void attemptIsReady(int fd);
    void didConnect(Attempt attempt);

    /// @name Reads, writes and time-outs, in GCDAsyncSocket+Streams.cpp
    void enqueueRead(GCDAsyncReadPacket packet);
    void startRead(GCDAsyncReadPacket &&packet);
    void maybeDequeueRead();
    Progress doReadData();
    qsizetype readIntoPacket();
    qsizetype readIntoPreBuffer();
    void completeCurrentRead();
    void maybeDequeueWrite();
    Progress doWriteData();
    void waitForSocket();
    void socketIsReady();
    void watchForEnd();
    void checkForEnd();
    void startReadTimer(Seconds delay);
    void startWriteTimer(Seconds delay);
    template<class Question, class Answer>
    void askForMoreTime(Question question, Answer answer);
    void extendRead(Seconds extension);
    void extendWrite(Seconds extension);

    const DispatchQueue m_socketQueue;
    std::weak_ptr<GCDAsyncSocketDelegate> m_delegate;
    std::optional<DispatchQueue> m_delegateQueue;
    Flags m_flags;
    Config m_config;
    quint64 m_connection = 0; // tells late events of an earlier connection apart

    std::vector<SocketAddress> m_addresses; // not tried yet, the next one first
    std::vector<Attempt> m_attempts;
    std::optional<SocketError> m_connectError; // of the latest attempt that failed
    std::unique_ptr<Reactor::Timer> m_connectTimer;
    std::unique_ptr<Reactor::Timer> m_alternateTimer;

    Descriptor m_socket;
    GCDAsyncSocketPreBuffer m_preBuffer;
    qsizetype m_preBufferTarget; // bytes; grows while reads fill it whole
    std::deque<GCDAsyncReadPacket> m_readQueue;
    std::deque<GCDAsyncWritePacket> m_writeQueue;
    std::optional<GCDAsyncReadPacket> m_currentRead;
    std::optional<GCDAsyncWritePacket> m_currentWrite;
    quint64 m_readSerial = 0; // of the current read; tells the time-out of an earlier one apart
    quint64 m_writeSerial = 0;
    std::unique_ptr<Reactor::Timer> m_readTimer;
    std::unique_ptr<Reactor::Timer> m_writeTimer;
    std::atomic<bool> m_hasNoRead = true; // written on the socket queue, read on the delegate queue
    std::atomic<int> m_callsUnderWay = 0; // to the delegate, in its queue
    static thread_local FollowUp *t_followUp;
};

template<class Call>
auto GCDAsyncSocket::onSocketQueue(Call call)
{
    return [weak = weak_from_this(), connection = m_connection, call = std::move(call)](auto... arguments) {
        const auto socket = weak.lock();
        if (!socket)
            return;
        socket->m_socketQueue.dispatch([socket, connection, call, arguments...] {
            if (socket->m_connection == connection)
                std::invoke(call, *socket, arguments...);
        });
    };
}

template<class Call>
void GCDAsyncSocket::tellDelegate(Call call)
{
    if (!m_delegateQueue)
        return;
    ++m_callsUnderWay;
    m_delegateQueue->async(
        [socket = shared_from_this(), delegate = m_delegate, call = std::move(call)]() mutable {
            --socket->m_callsUnderWay;
            socket->tellNow(delegate, call);
            // Only now it is known whether the delegate wants to read on: in a stream of reads it does, and
            // then the descriptor need not be watched for the end as well.
            if (socket->m_hasNoRead)
                socket->m_socketQueue.dispatch([socket] { socket->watchForEnd(); });
        });
}

template<class Call>
void GCDAsyncSocket::tellNow(const std::weak_ptr<GCDAsyncSocketDelegate> &delegate, Call &call)
{
    for (FollowUp *outer = t_followUp; outer; outer = outer->outer) {
        if (outer->socket == this) {
            outer->isOpen = false;
            tellFollowUp(*outer);
        }
    }
    FollowUp followUp{.socket = this, .outer = t_followUp};
    t_followUp = &followUp;
    if (const auto listener = delegate.lock())
        call(*listener, *this);
    for (int told = 1; followUp.data; ++told) {
        followUp.isOpen = followUp.isOpen && told < MaxFollowUps;
        tellFollowUp(followUp);
    }
    t_followUp = followUp.outer;
}

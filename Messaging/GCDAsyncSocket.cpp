#include "Messaging/GCDAsyncSocket.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
constexpr qsizetype FirstPreBuffer = 4096;
} // namespace

// ---- Life ---------------------------------------------------------------------------------------------------

std::shared_ptr<GCDAsyncSocket> GCDAsyncSocket::create(std::weak_ptr<GCDAsyncSocketDelegate> delegate,
                                                       std::optional<DispatchQueue> delegateQueue,
                                                       std::optional<DispatchQueue> socketQueue)
{
    return std::make_shared<GCDAsyncSocket>(Private(), std::move(delegate), std::move(delegateQueue),
                                            std::move(socketQueue));
}

GCDAsyncSocket::GCDAsyncSocket(Private, std::weak_ptr<GCDAsyncSocketDelegate> delegate,
                               std::optional<DispatchQueue> delegateQueue,
                               std::optional<DispatchQueue> socketQueue)
    : m_socketQueue(socketQueue ? *socketQueue : DispatchQueue("GCDAsyncSocket", DispatchQueue::Pace::Short)),
      m_delegate(std::move(delegate)), m_delegateQueue(std::move(delegateQueue)), m_preBuffer(FirstPreBuffer),
      m_preBufferTarget(FirstPreBuffer)
{
}

GCDAsyncSocket::Descriptor::Descriptor(Descriptor &&other) noexcept
    : watch(std::move(other.watch)), m_fd(std::exchange(other.m_fd, -1))
{
}

GCDAsyncSocket::Descriptor &GCDAsyncSocket::Descriptor::operator=(Descriptor &&other) noexcept
{
    std::swap(watch, other.watch);
    std::swap(m_fd, other.m_fd);
    return *this;
}

GCDAsyncSocket::Descriptor::~Descriptor()
{
    watch.reset(); // before the number can be given out again
    if (m_fd >= 0)
        ::close(m_fd);
}

// ---- Calls --------------------------------------------------------------------------------------------------

bool GCDAsyncSocket::connectToHost(const QString &host, quint16 port, Seconds timeout, SocketError *error)
{
    std::optional<SocketError> refused;
    m_socketQueue.sync([&] {
        refused = refusal(host);
        if (refused)
            return;
        m_flags.started = true;
        ++m_connection;
        const auto addresses = addressesWithoutLookUp(host, port);
        if (addresses.empty())
            lookUp(host, port);
        else
            startConnecting(addresses);
        // On the loopback device the outcome is often known by now, and then no timer has to be made.
        if (m_flags.started && !m_flags.connected && timeout >= Seconds::zero()) {
            m_connectTimer = startTimer(timeout, [](GCDAsyncSocket &socket) {
                socket.closeWithError(socketError(SocketErrorCode::ConnectTimeout));
            });
        }
    });
    if (refused && error)
        *error = *refused;
    return !refused;
}

void GCDAsyncSocket::readDataToLength(qsizetype length, Seconds timeout, qint64 tag)
{
    if (length < 1)
        return;
    GCDAsyncReadPacket packet;
    packet.readLength = length;
    packet.timeout = timeout;
    packet.tag = tag;
    enqueueRead(std::move(packet));
}

void GCDAsyncSocket::readDataToData(const QByteArray &terminator, Seconds timeout, qsizetype maxLength,
                                    qint64 tag)
{
    if (terminator.isEmpty() || (maxLength > 0 && maxLength < terminator.size()))
        return;
    GCDAsyncReadPacket packet;
    packet.term = terminator;
    packet.maxLength = maxLength;
    packet.timeout = timeout;
    packet.tag = tag;
    enqueueRead(std::move(packet));
}

void GCDAsyncSocket::readDataWithTimeout(Seconds timeout, qint64 tag)
{
    GCDAsyncReadPacket packet;
    packet.timeout = timeout;
    packet.tag = tag;
    enqueueRead(std::move(packet));
}

void GCDAsyncSocket::writeData(const QByteArray &data, Seconds timeout, qint64 tag)
{
    if (data.isEmpty())
        return;
    m_socketQueue.dispatch(
        [self = shared_from_this(), packet = GCDAsyncWritePacket{data, 0, tag, timeout}]() mutable {
            self->m_writeQueue.push_back(std::move(packet));
            self->maybeDequeueWrite();
        });
}

void GCDAsyncSocket::disconnect()
{
    m_socketQueue.sync([this] {
        if (m_flags.started)
            closeWithError(std::nullopt);
    });
}

void GCDAsyncSocket::disconnectAfterReading()
{
    m_socketQueue.dispatch([self = shared_from_this()] {
        self->m_flags.disconnectAfterReads = true;
        self->closeWhenDone();
    });
}

void GCDAsyncSocket::disconnectAfterWriting()
{
    m_socketQueue.dispatch([self = shared_from_this()] {
        self->m_flags.disconnectAfterWrites = true;
        self->closeWhenDone();
    });
}

bool GCDAsyncSocket::isConnected() const
{
    bool connected = false;
    m_socketQueue.sync([&] { connected = m_flags.connected; });
    return connected;
}

quint16 GCDAsyncSocket::localPort() const
{
    sockaddr_in address{};
    m_socketQueue.sync([&] {
        socklen_t size = sizeof address;
        if (m_flags.connected)
            ::getsockname(m_socket.fd(), reinterpret_cast<sockaddr *>(&address), &size);
    });
    return address.sin_family == AF_INET ? ntohs(address.sin_port) : quint16(0);
}

void GCDAsyncSocket::setDelegate(std::weak_ptr<GCDAsyncSocketDelegate> delegate)
{
    m_socketQueue.sync([&] { m_delegate = std::move(delegate); });
}

void GCDAsyncSocket::setIPv4Enabled(bool enabled)
{
    m_socketQueue.sync([&] { m_config.ipv4 = enabled; });
}

void GCDAsyncSocket::setIPv6Enabled(bool enabled)
{
    m_socketQueue.sync([&] { m_config.ipv6 = enabled; });
}

void GCDAsyncSocket::setIPv4PreferredOverIPv6(bool preferred)
{
    m_socketQueue.sync([&] { m_config.preferIPv4 = preferred; });
}

// ---- Closing ------------------------------------------------------------------------------------------------

void GCDAsyncSocket::closeWithError(std::optional<SocketError> error)
{
    const bool started = m_flags.started;
    ++m_connection;
    ++m_readSerial;
    ++m_writeSerial;
    m_connectTimer.reset();
    m_alternateTimer.reset();
    m_readTimer.reset();
    m_writeTimer.reset();
    m_addresses.clear();
    m_attempts.clear();
    m_connectError.reset();
    m_currentRead.reset();
    m_currentWrite.reset();
    m_readQueue.clear();
    m_writeQueue.clear();
    m_preBuffer.reset();
    m_socket = Descriptor();
    m_flags = Flags();
    m_hasNoRead = true;
    if (!started)
        return;
    tellDelegate([error = std::move(error)](GCDAsyncSocketDelegate &delegate, GCDAsyncSocket &socket) {
        delegate.socketDidDisconnectWithError(socket, error);
    });
}

void GCDAsyncSocket::closeWhenDone()
{
    const bool readsDone = !m_currentRead && m_readQueue.empty();
    const bool writesDone = !m_currentWrite && m_writeQueue.empty();
    const bool requested = m_flags.disconnectAfterReads || m_flags.disconnectAfterWrites;
    if (requested && (readsDone || !m_flags.disconnectAfterReads) &&
        (writesDone || !m_flags.disconnectAfterWrites))
        closeWithError(std::nullopt);
}

std::unique_ptr<Reactor::Timer> GCDAsyncSocket::startTimer(Seconds delay,
                                                           std::function<void(GCDAsyncSocket &)> fire)
{
    constexpr Seconds Longest = std::chrono::hours(24 * 365); // keeps the number of nanoseconds within its type
    const auto nanoseconds = std::chrono::duration_cast<std::chrono::nanoseconds>(std::min(delay, Longest));
    return Reactor::shared().startTimer(nanoseconds, onSocketQueue(std::move(fire)));
}

// From the call to an open connection. Up to two attempts run side by side, one for each address family; the
// first that opens ends the other.
#include "Messaging/GCDAsyncSocket.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace
{
constexpr auto SocketCall = "Error in socket() function"_L1;
constexpr auto ConnectCall = "Error in connect() function"_L1;

/// True when an attempt is no longer under way. On the loopback device that is so right after the call: asking
/// once spares the way through the reactor, which a search for an absent daemon would take a hundred times a
/// second.
bool isDecided(int fd)
{
    pollfd entry{fd, POLLOUT, 0};
    return ::poll(&entry, 1, 0) == 1;
}

/// The error that an attempt has met so far: an errno, 0 for none. Asking takes it off the socket.
int pendingError(int fd)
{
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : errno;
}

/// How an attempt that is no longer under way has ended: an errno, 0 for success.
int outcome(int fd)
{
    const int error = pendingError(fd);
    // Nobody listens there: the system has joined the socket with itself.
    return error == 0 && isConnectedToItself(fd) ? ECONNREFUSED : error;
}
} // namespace

std::optional<SocketError> GCDAsyncSocket::refusal(const QString &host) const
{
    using Code = SocketErrorCode;
    if (m_delegate.expired())
        return socketError(Code::BadConfiguration,
                           u"Attempting to connect without a delegate. Set a delegate first."_s);
    if (!m_delegateQueue)
        return socketError(Code::BadConfiguration,
                           u"Attempting to connect without a delegate queue. Set a delegate queue first."_s);
    if (m_flags.started)
        return socketError(
            Code::BadConfiguration,
            u"Attempting to connect while connected or accepting connections. Disconnect first."_s);
    if (!m_config.ipv4 && !m_config.ipv6)
        return socketError(
            Code::BadConfiguration,
            u"Both IPv4 and IPv6 have been disabled. Must enable at least one protocol first."_s);
    if (host.isEmpty())
        return socketError(
            Code::BadParameter,
            u"Invalid host parameter (nil or \"\"). Should be a domain name or IP address string."_s);
    return std::nullopt;
}

void GCDAsyncSocket::lookUp(const QString &host, quint16 port)
{
    // The resolver blocks, so look-ups take turns: however slow it is, it never holds more than one pool
    // thread.
    static const DispatchQueue lookUps("GCDAsyncSocket.lookUp");
    auto answer = onSocketQueue([](GCDAsyncSocket &socket, const SocketAddresses &addresses, int error) {
        if (error == 0)
            socket.startConnecting(addresses);
        else
            socket.closeWithError(lookUpError(error));
    });
    lookUps.async([host, port, answer = std::move(answer)] {
        int error = 0;
        const auto addresses = lookUpAddresses(host, port, &error);
        answer(addresses, error);
    });
}

void GCDAsyncSocket::startConnecting(const SocketAddresses &addresses)
{
    if (addresses.v4 && m_config.ipv4)
        m_addresses.push_back(*addresses.v4);
    if (addresses.v6 && m_config.ipv6)
        m_addresses.push_back(*addresses.v6);
    if (!m_config.preferIPv4)
        std::reverse(m_addresses.begin(), m_addresses.end());
    if (m_addresses.empty())
        m_connectError =
            socketError(SocketErrorCode::Other, u"The host has no address of an enabled family."_s);
    tryNextAddress();
}

void GCDAsyncSocket::tryNextAddress()
{
    m_alternateTimer.reset();
    while (!m_addresses.empty()) {
        const SocketAddress address = m_addresses.front();
        m_addresses.erase(m_addresses.begin());
        m_connectError = tryAddress(address);
        if (m_connectError)
            continue; // failed at once, so the other family need not wait
        if (!m_addresses.empty())
            m_alternateTimer = startTimer(AlternateAddressDelay, &GCDAsyncSocket::tryNextAddress);
        return;
    }
    if (m_attempts.empty())
        closeWithError(m_connectError);
}

std::optional<SocketError> GCDAsyncSocket::tryAddress(const SocketAddress &address)
{
    const int fd = ::socket(address.family(), SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd < 0)
        return systemError(errno, SocketCall);
    Attempt attempt{address, Descriptor(fd)};
    const bool open = ::connect(fd, address.data(), address.length) == 0;
    if (!open && errno != EINPROGRESS && errno != EINTR)
        return systemError(errno, ConnectCall);
    // Refused already: the most frequent answer while a daemon is away, so it is asked for first.
    if (const int error = open ? 0 : pendingError(fd))
        return systemError(error, ConnectCall);
    if (open || isDecided(fd)) {
        if (const int error = outcome(fd))
            return systemError(error, ConnectCall);
        didConnect(std::move(attempt));
        return std::nullopt;
    }
    auto ready = onSocketQueue([fd](GCDAsyncSocket &socket) { socket.attemptIsReady(fd); });
    attempt.descriptor.watch =
        Reactor::shared().watch(fd, [ready = std::move(ready)](Reactor::Events) { ready(); });
    if (!attempt.descriptor.watch->arm(Reactor::Writable))
        return systemError(errno, WatchCall);
    m_attempts.push_back(std::move(attempt));
    return std::nullopt;
}

void GCDAsyncSocket::attemptIsReady(int fd)
{
    const auto found = std::find_if(m_attempts.begin(), m_attempts.end(),
                                    [fd](const Attempt &attempt) { return attempt.descriptor.fd() == fd; });
    if (found == m_attempts.end())
        return;
    Attempt attempt = std::move(*found);
    m_attempts.erase(found);
    if (const int error = outcome(fd)) {
        m_connectError = systemError(error, ConnectCall);
        tryNextAddress();
        return;
    }
    didConnect(std::move(attempt));
}

void GCDAsyncSocket::didConnect(Attempt attempt)
{
    m_connectTimer.reset();
    m_alternateTimer.reset();
    m_addresses.clear();
    m_attempts.clear();
    m_socket = std::move(attempt.descriptor);
    m_flags.connected = true;
    // A small write that follows a small write goes out at once instead of waiting for the peer's
    // acknowledgement.
    const int on = 1;
    ::setsockopt(m_socket.fd(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    auto ready = onSocketQueue(&GCDAsyncSocket::socketIsReady);
    m_socket.watch = Reactor::shared().watch(m_socket.fd(), [ready](Reactor::Events) { ready(); });

    tellDelegate([host = attempt.address.host(),
                  port = attempt.address.port()](GCDAsyncSocketDelegate &delegate, GCDAsyncSocket &socket) {
        delegate.socketDidConnectToHost(socket, host, port);
    });
    maybeDequeueRead();
    maybeDequeueWrite();
}

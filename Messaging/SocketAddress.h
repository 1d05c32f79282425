#pragma once

#include <QString>

#include <sys/socket.h>

#include <optional>

/// An internet address of either family with a port, as the system calls take it.
struct SocketAddress {
    sockaddr_storage storage{};
    socklen_t length = 0;

    [[nodiscard]] int family() const { return storage.ss_family; }
    [[nodiscard]] const sockaddr *data() const { return reinterpret_cast<const sockaddr *>(&storage); }
    /// The address as digits, without the port.
    [[nodiscard]] QString host() const;
    /// In host byte order.
    [[nodiscard]] quint16 port() const;
};

/// At most one address of each family.
struct SocketAddresses {
    std::optional<SocketAddress> v4;
    std::optional<SocketAddress> v6;

    [[nodiscard]] bool empty() const { return !v4 && !v6; }
};

/// The addresses of a host that needs no look-up: digits of either family (IPv6 may carry a scope), or one of
/// the names "localhost" and "loopback", which mean both loopback addresses. Empty for any other host.
[[nodiscard]] SocketAddresses addressesWithoutLookUp(const QString &host, quint16 port);

/// Asks the system's resolver, for the first address of each family; may block for many seconds. `error` gets
/// the code of getaddrinfo(), 0 when it went well.
[[nodiscard]] SocketAddresses lookUpAddresses(const QString &host, quint16 port, int *error);

/// True when both ends of the connection are the same socket. The system makes such a connection when nobody
/// listens on a port of the range for outgoing connections and it gives out just that port; who retries often
/// meets it.
[[nodiscard]] bool isConnectedToItself(int fd);

#pragma once

#include <QByteArray>

#include <optional>

#include <sys/types.h>

/// Who is at the other end of a port of this machine. Source of the tables' form: proc_net_tcp of the Linux
/// kernel's documentation.
namespace SocketOwner
{
/// The user whose socket takes connections to 127.0.0.1 at `port`, read from the texts of /proc/net/tcp and
/// tcp6. The kernel prefers a socket bound to that very address to one bound to all, and IPv4 to IPv6; so does
/// this. None when nobody listens there, or when sockets of several users stand on the same step.
[[nodiscard]] std::optional<uid_t> ownerInTables(const QByteArray &tcp, const QByteArray &tcp6, quint16 port);

/// As above, from the kernel's tables of now; none also when they can't be read.
[[nodiscard]] std::optional<uid_t> listenerOwner(quint16 port);

/// Whether what that user asks for may be run here: it is root or the user of this process.
[[nodiscard]] bool isTrusted(std::optional<uid_t> owner);
} // namespace SocketOwner

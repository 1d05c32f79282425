#pragma once

#include <QByteArray>

#include <optional>

#include <sys/types.h>

/// Who owns the sockets at 127.0.0.1, as the kernel tells. It is asked for one row by its socket diagnosis
/// interface (NETLINK_SOCK_DIAG), and where that is missing the tables of /proc/net are read. Source of the
/// forms: linux/inet_diag.h, and proc_net_tcp of the Linux kernel's documentation.
namespace SocketOwner
{
/// The user at the other end of the connection from `ownPort` to `peerPort`, both at 127.0.0.1. None when there
/// is no such connection, and while nobody has accepted it: until then the kernel has no owner to tell, and
/// some kernels show root. Takes some 20 microseconds.
[[nodiscard]] std::optional<uid_t> connectionOwner(quint16 peerPort, quint16 ownPort);

/// The user whose socket takes connections to 127.0.0.1 at `port`. None when nobody listens there.
[[nodiscard]] std::optional<uid_t> listenerOwner(quint16 port);

/// Both of the above, from the texts of /proc/net/tcp and tcp6. The kernel prefers a listener bound to that
/// very address to one bound to all, and IPv4 to IPv6; so does this. None also when listeners of several users
/// stand on the same step.
[[nodiscard]] std::optional<uid_t> connectionOwnerInTables(const QByteArray &tcp, const QByteArray &tcp6,
                                                           quint16 peerPort, quint16 ownPort);
[[nodiscard]] std::optional<uid_t> listenerOwnerInTables(const QByteArray &tcp, const QByteArray &tcp6,
                                                         quint16 port);

/// Whether the kernel has answered a question by its diagnosis interface in this process. Where it never does
/// it tells of no socket's end either.
[[nodiscard]] bool kernelAnswers();

/// Whether what that user asks for may be run here: it is root or the user of this process.
[[nodiscard]] bool isTrusted(std::optional<uid_t> owner);
} // namespace SocketOwner

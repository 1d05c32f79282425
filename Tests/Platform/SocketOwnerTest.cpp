#include "Platform/SocketOwner.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace
{
constexpr char Head[] =
    "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout\n";

QByteArray line(const char *local, const char *state, const char *user)
{
    return QByteArray("   0: ") + local + " 00000000:0000 " + state +
           " 00000000:00000000 00:00000000 00000000  " + user +
           "        0 12345 1 0000000000000000 100 0 0 10 0\n";
}

/// A socket that listens at a free port of the address.
class Listener
{
public:
    explicit Listener(int family, const char *address) : m_socket(socket(family, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_storage place{};
        place.ss_family = static_cast<sa_family_t>(family);
        void *to = family == AF_INET ? static_cast<void *>(&reinterpret_cast<sockaddr_in *>(&place)->sin_addr)
                                     : &reinterpret_cast<sockaddr_in6 *>(&place)->sin6_addr;
        inet_pton(family, address, to);
        auto *name = reinterpret_cast<sockaddr *>(&place);
        socklen_t size = family == AF_INET ? sizeof(sockaddr_in) : sizeof(sockaddr_in6);
        m_listens = bind(m_socket, name, size) == 0 && listen(m_socket, 1) == 0 &&
                    getsockname(m_socket, name, &size) == 0;
        m_port = ntohs(reinterpret_cast<sockaddr_in *>(&place)->sin_port); // at the same place in both families
    }
    ~Listener() { close(m_socket); }
    [[nodiscard]] bool listens() const { return m_listens; }
    [[nodiscard]] quint16 port() const { return m_port; }

private:
    int m_socket;
    bool m_listens = false;
    quint16 m_port = 0;
};
} // namespace

// The addresses are those of a little-endian machine.
TEST(SocketOwner, ReadsTheKernelsTables)
{
    const struct {
        const char *name;
        QByteArray tcp, tcp6;
        std::optional<uid_t> owner;
    } rows[] = {
        {"loopback", line("0100007F:1F90", "0A", "1000"), "", 1000},
        {"any address", line("00000000:1F90", "0A", "0"), "", 0},
        {"loopback before any", line("00000000:1F90", "0A", "7") + line("0100007F:1F90", "0A", "8"), "", 8},
        {"IPv6, mapped", "", line("0000000000000000FFFF00000100007F:1F90", "0A", "9"), 9},
        {"IPv6, any", "", line("00000000000000000000000000000000:1F90", "0A", "9"), 9},
        {"IPv4 any before IPv6 any", line("00000000:1F90", "0A", "7"),
         line("00000000000000000000000000000000:1F90", "0A", "9"), 7},
        {"IPv6 loopback takes no IPv4", "", line("00000000000000000000000001000000:1F90", "0A", "9"), {}},
        {"two users on one step", line("0100007F:1F90", "0A", "7") + line("0100007F:1F90", "0A", "8"), "", {}},
        {"one user twice", line("0100007F:1F90", "0A", "7") + line("0100007F:1F90", "0A", "7"), "", 7},
        {"connected, not listening", line("0100007F:1F90", "01", "7"), "", {}},
        {"another port", line("0100007F:1F91", "0A", "7"), "", {}},
        {"another address", line("0200007F:1F90", "0A", "7"), "", {}},
        {"no address", line("0100007:1F90", "0A", "7") + line("0100007G:1F90", "0A", "7"), "", {}},
        {"no port", line("0100007F", "0A", "7"), "", {}},
        {"no user", line("0100007F:1F90", "0A", "root"), "", {}},
        {"cut", line("0100007F:1F90", "0A", "7").left(60), "", {}},
        {"nothing", "", "", {}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(SocketOwner::ownerInTables(Head + row.tcp, Head + row.tcp6, 8080), row.owner);
    }
}

TEST(SocketOwner, FindsAListenerOfOurOwn)
{
    for (const auto &[family, address, isFound] :
         {std::tuple(AF_INET, "127.0.0.1", true), std::tuple(AF_INET, "0.0.0.0", true),
          std::tuple(AF_INET6, "::ffff:127.0.0.1", true), std::tuple(AF_INET6, "::", true),
          std::tuple(AF_INET6, "::1", false)}) {
        SCOPED_TRACE(address);
        const Listener listener(family, address);
        if (family == AF_INET6 && !listener.listens())
            continue; // a machine without IPv6
        ASSERT_TRUE(listener.listens());
        EXPECT_EQ(SocketOwner::listenerOwner(listener.port()),
                  isFound ? std::optional(getuid()) : std::nullopt);
    }
}

TEST(SocketOwner, TrustsRootAndThisUserOnly)
{
    EXPECT_TRUE(SocketOwner::isTrusted(0));
    EXPECT_TRUE(SocketOwner::isTrusted(getuid()));
    EXPECT_FALSE(SocketOwner::isTrusted(getuid() + 1));
    EXPECT_FALSE(SocketOwner::isTrusted(std::nullopt));
}

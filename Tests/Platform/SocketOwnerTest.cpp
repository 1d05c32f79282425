#include "Platform/SocketOwner.h"

#include <QTcpServer>

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
} // namespace

// The addresses are those of a little-endian machine.
TEST(SocketOwner, ReadsTheKernelsTables)
{
    const std::tuple<const char *, QByteArray, QByteArray, std::optional<uid_t>> rows[] = {
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
    for (const auto &[name, tcp, tcp6, owner] : rows)
        EXPECT_EQ(SocketOwner::ownerInTables(Head + tcp, Head + tcp6, 8080), owner) << name;
}

TEST(SocketOwner, FindsAListenerOfOurOwn)
{
    const std::pair<const char *, bool> rows[] = {
        {"127.0.0.1", true}, {"0.0.0.0", true}, {"::ffff:127.0.0.1", true}, {"::", true}, {"::1", false}};
    for (const auto &[address, isFound] : rows) {
        SCOPED_TRACE(address);
        QTcpServer listener;
        const QHostAddress place(QString::fromLatin1(address));
        if (!listener.listen(place) && QByteArray(address).contains(':'))
            continue; // a machine without IPv6
        ASSERT_TRUE(listener.isListening());
        EXPECT_EQ(SocketOwner::listenerOwner(listener.serverPort()),
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

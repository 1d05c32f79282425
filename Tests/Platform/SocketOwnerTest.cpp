#include "Platform/SocketOwner.h"
#include "Platform/SocketEndWatch.h"
#include "Tests/WaitUntil.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <unistd.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr char Head[] =
    "  sl  local_address rem_address   st tx_queue rx_queue tr tm->when retrnsmt   uid  timeout inode\n";
// The addresses are those of a little-endian machine.
constexpr char Any6[] = "00000000000000000000000000000000:1F90";
constexpr char Mapped[] = "0000000000000000FFFF00000100007F:1F90";
constexpr char MappedRemote[] = "0000000000000000FFFF00000100007F:C350";

QByteArray row(const char *local, const char *remote, const char *state, const char *user,
               const char *inode = "12345")
{
    return QByteArray("   0: ") + local + ' ' + remote + ' ' + state +
           " 00000000:00000000 00:00000000 00000000  " + user + "        0 " + inode +
           " 1 0000000000000000 100 0 0 10 0\n";
}

QByteArray line(const char *local, const char *state, const char *user)
{
    return row(local, "00000000:0000", state, user);
}
} // namespace

TEST(SocketOwner, ReadsListenersInTheKernelsTables)
{
    const std::tuple<const char *, QByteArray, QByteArray, std::optional<uid_t>> rows[] = {
        {"loopback", line("0100007F:1F90", "0A", "1000"), "", 1000},
        {"any address", line("00000000:1F90", "0A", "0"), "", 0},
        {"loopback before any", line("00000000:1F90", "0A", "7") + line("0100007F:1F90", "0A", "8"), "", 8},
        {"IPv6, mapped", "", line(Mapped, "0A", "9"), 9},
        {"IPv6, any", "", line(Any6, "0A", "9"), 9},
        {"IPv6 loopback takes no IPv4", "", line("00000000000000000000000001000000:1F90", "0A", "9"), {}},
        {"two users on one step", line("0100007F:1F90", "0A", "7") + line("0100007F:1F90", "0A", "8"), "", {}},
        {"connected, not listening", line("0100007F:1F90", "01", "7"), "", {}},
        {"another address", line("0200007F:1F90", "0A", "7"), "", {}},
        {"no address", line("0100007:1F90", "0A", "7") + line("0100007G:1F90", "0A", "7"), "", {}},
        {"no user", line("0100007F:1F90", "0A", "root"), "", {}},
        {"cut", line("0100007F:1F90", "0A", "7").left(60), "", {}},
    };
    for (const auto &[name, tcp, tcp6, owner] : rows)
        EXPECT_EQ(SocketOwner::listenerOwnerInTables(Head + tcp, Head + tcp6, 8080), owner) << name;
}

TEST(SocketOwner, ReadsTheOtherEndOfAConnectionInTheKernelsTables)
{
    constexpr char Daemon[] = "0100007F:1F90";
    constexpr char Own[] = "0100007F:C350";
    const std::tuple<const char *, QByteArray, QByteArray, std::optional<uid_t>> rows[] = {
        {"IPv4", row(Daemon, Own, "01", "1000"), "", 1000},
        {"IPv6, mapped", "", row(Mapped, MappedRemote, "01", "1000"), 1000},
        {"among others",
         row(Own, Daemon, "01", "5") + row(Daemon, "00000000:0000", "0A", "6") +
             row(Daemon, "0100007F:C351", "01", "7") + row(Daemon, Own, "01", "8"),
         "", 8},
        {"not accepted, shown as root's", row(Daemon, Own, "01", "0", "0"), "", {}},
        {"our own end", row(Own, Daemon, "01", "1000"), "", {}},
        {"closed by its owner", row(Daemon, Own, "05", "1000"), "", {}},
        {"from another address", row(Daemon, "0200007F:C350", "01", "1000"), "", {}},
        {"at another address", row("0200007F:1F90", Own, "01", "1000"), "", {}},
        {"no inode", row(Daemon, Own, "01", "1000", "x"), "", {}},
    };
    for (const auto &[name, tcp, tcp6, owner] : rows)
        EXPECT_EQ(SocketOwner::connectionOwnerInTables(Head + tcp, Head + tcp6, 8080, 50000), owner) << name;
}

TEST(SocketOwner, FindsSocketsOfOurOwn)
{
    for (const QHostAddress &place : {QHostAddress(QHostAddress::LocalHost), QHostAddress(QHostAddress::Any),
                                      QHostAddress(u"::ffff:127.0.0.1"_s)}) {
        QTcpServer listener;
        if (!listener.listen(place) && place.protocol() == QAbstractSocket::IPv6Protocol)
            continue; // a machine without IPv6
        const quint16 port = listener.serverPort();
        EXPECT_EQ(SocketOwner::listenerOwner(port), getuid()) << place.toString().toStdString();
        QTcpSocket own;
        own.connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        ASSERT_TRUE(own.waitForConnected());
        EXPECT_EQ(SocketOwner::connectionOwner(port, own.localPort()), std::nullopt)
            << "nobody has accepted it";
        ASSERT_TRUE(listener.waitForNewConnection(5000));
        const std::unique_ptr<QTcpSocket> peer(listener.nextPendingConnection());
        EXPECT_EQ(SocketOwner::connectionOwner(port, own.localPort()), getuid());
        int ends = 0;
        const auto watch = SocketEndWatch::start(port, [&ends] { ++ends; });
        ASSERT_TRUE(watch);
        QTcpServer another;
        another.listen(place);
        another.close();
        QCoreApplication::processEvents();
        EXPECT_EQ(ends, 0) << "of another port";
        listener.close();
        EXPECT_TRUE(waitUntil([&] { return ends > 0; }));
        EXPECT_EQ(SocketOwner::listenerOwner(port), std::nullopt);
        EXPECT_EQ(SocketOwner::connectionOwner(port, own.localPort()), getuid())
            << "it goes without a listener";
        EXPECT_EQ(SocketOwner::connectionOwner(port, 1), std::nullopt);
    }
}

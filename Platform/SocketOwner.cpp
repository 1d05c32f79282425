#include "Platform/SocketOwner.h"

#include "Platform/Limits.h"

#include <QFile>
#include <QList>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>

#include <arpa/inet.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
// ---- One row, asked for by its ports ---------------------------------------------------------------------

struct DiagRequest {
    nlmsghdr head;
    inet_diag_req_v2 body;
};

/// What the kernel says of one socket. `isAnswered` is false where it can't be asked.
struct DiagAnswer {
    bool isAnswered = false;
    std::optional<inet_diag_msg> row; ///< none: there is no such socket
};

DiagRequest requestFor(quint16 ownPort, in_addr_t remoteAddress, quint16 remotePort)
{
    DiagRequest request{};
    request.head.nlmsg_len = sizeof request;
    request.head.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    request.head.nlmsg_flags = NLM_F_REQUEST;
    request.body.sdiag_family = AF_INET; // finds sockets of IPv6 that take IPv4 as well
    request.body.sdiag_protocol = IPPROTO_TCP;
    request.body.idiag_states = ~0U;
    request.body.id.idiag_src[0] = htonl(INADDR_LOOPBACK);
    request.body.id.idiag_sport = htons(ownPort);
    request.body.id.idiag_dst[0] = remoteAddress;
    request.body.id.idiag_dport = htons(remotePort);
    std::fill_n(request.body.id.idiag_cookie, 2, INET_DIAG_NOCOOKIE);
    return request;
}

/// A kernel without the diagnosis of TCP gives the same answer as one that knows of no such socket. So that
/// answer counts only after it has shown a row.
std::atomic<bool> knowsSockets = false;

DiagAnswer ask(const DiagRequest &request)
{
    const int fd = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG);
    if (fd < 0)
        return {};
    alignas(nlmsghdr) std::array<char, 4096> answer{};
    // The kernel answers within the call, so an answer that is not there now never comes.
    const bool sent = ::send(fd, &request, sizeof request, 0) == sizeof request;
    const ssize_t got = sent ? ::recv(fd, answer.data(), answer.size(), MSG_DONTWAIT) : -1;
    ::close(fd);
    nlmsghdr head{};
    if (got < ssize_t(sizeof head))
        return {};
    std::memcpy(&head, answer.data(), sizeof head);
    const auto holds = [&](std::size_t body) {
        return std::size_t(got) >= NLMSG_HDRLEN + body && head.nlmsg_len >= NLMSG_HDRLEN + body;
    };
    if (head.nlmsg_type == NLMSG_ERROR && holds(sizeof(nlmsgerr))) {
        nlmsgerr error{};
        std::memcpy(&error, answer.data() + NLMSG_HDRLEN, sizeof error);
        return {.isAnswered = error.error == -ENOENT && knowsSockets};
    }
    inet_diag_msg row{};
    if (head.nlmsg_type != SOCK_DIAG_BY_FAMILY || !holds(sizeof row))
        return {};
    std::memcpy(&row, answer.data() + NLMSG_HDRLEN, sizeof row);
    knowsSockets = true;
    return {true, row};
}

// ---- The tables ------------------------------------------------------------------------------------------

using Address = std::array<quint8, 16>;

struct Row {
    Address localAddress{}; // IPv4 in its IPv6-mapped form
    Address remoteAddress{};
    quint16 localPort = 0;
    quint16 remotePort = 0;
    bool isListener = false;
    bool isConnection = false;
    uid_t user = 0;
    quint64 inode = 0;
};

constexpr Address mapped(quint8 a, quint8 b, quint8 c, quint8 d)
{
    return {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, a, b, c, d};
}

/// The table shows an address as numbers of four bytes each, which lie in memory in the order of the network.
std::optional<Address> parseAddress(const QByteArray &text)
{
    if (text.size() != 8 && text.size() != 32)
        return std::nullopt;
    Address address = mapped(0, 0, 0, 0);
    const qsizetype start = text.size() == 8 ? 12 : 0;
    for (qsizetype digit = 0; digit < text.size(); digit += 8) {
        bool ok = false;
        const quint32 word = text.mid(digit, 8).toUInt(&ok, 16);
        if (!ok)
            return std::nullopt;
        std::memcpy(address.data() + start + digit / 2, &word, sizeof word);
    }
    return address;
}

bool parsePlace(const QByteArray &text, Address *address, quint16 *port)
{
    const QList<QByteArray> parts = text.split(':');
    const auto parsed = parts.size() == 2 ? parseAddress(parts.first()) : std::nullopt;
    bool ok = false;
    *port = parts.last().toUShort(&ok, 16);
    *address = parsed.value_or(Address());
    return parsed && ok;
}

std::optional<Row> parseLine(const QByteArray &line)
{
    enum Column { Local = 1, Remote = 2, State = 3, User = 7, Inode = 9 };
    static const QByteArray Listening = QByteArrayLiteral("0A");
    static const QByteArray Established = QByteArrayLiteral("01");
    const QList<QByteArray> columns = line.simplified().split(' ');
    if (columns.size() <= Inode)
        return std::nullopt;
    Row row;
    bool userOk = false;
    bool inodeOk = false;
    row.isListener = columns[State] == Listening;
    row.isConnection = columns[State] == Established;
    row.user = columns[User].toUInt(&userOk);
    row.inode = columns[Inode].toULongLong(&inodeOk);
    if (!parsePlace(columns[Local], &row.localAddress, &row.localPort) ||
        !parsePlace(columns[Remote], &row.remoteAddress, &row.remotePort) || !userOk || !inodeOk)
        return std::nullopt;
    return row;
}

/// The rows whose own end has that port.
QList<Row> rowsAt(const QByteArray &table, quint16 port)
{
    const QByteArray word = ':' + QByteArray::number(port, 16).toUpper().rightJustified(4, '0') + ' ';
    QList<Row> rows;
    for (qsizetype start = 0; start < table.size();) {
        const qsizetype end = table.indexOf('\n', start) < 0 ? table.size() : table.indexOf('\n', start);
        const QByteArray line = QByteArray::fromRawData(table.constData() + start, end - start);
        start = end + 1;
        if (!line.contains(word))
            continue; // one of thousands; taking it apart costs far more
        const auto row = parseLine(line);
        if (row && row->localPort == port)
            rows.append(*row);
    }
    return rows;
}

QByteArray readTable(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(Limits::SocketTableBytes) : QByteArray();
}
} // namespace

std::optional<uid_t> SocketOwner::connectionOwnerInTables(const QByteArray &tcp, const QByteArray &tcp6,
                                                          quint16 peerPort, quint16 ownPort)
{
    const Address loopback = mapped(127, 0, 0, 1);
    for (const Row &row : rowsAt(tcp, peerPort) + rowsAt(tcp6, peerPort)) {
        if (row.isConnection && row.inode != 0 && row.remotePort == ownPort && row.localAddress == loopback &&
            row.remoteAddress == loopback)
            return row.user;
    }
    return std::nullopt;
}

std::optional<uid_t> SocketOwner::listenerOwnerInTables(const QByteArray &tcp, const QByteArray &tcp6,
                                                        quint16 port)
{
    const QList<Row> v4 = rowsAt(tcp, port);
    const QList<Row> v6 = rowsAt(tcp6, port);
    const struct {
        const QList<Row> &rows;
        Address address;
    } steps[] = {
        {v4, mapped(127, 0, 0, 1)},
        {v6, mapped(127, 0, 0, 1)},
        {v4, mapped(0, 0, 0, 0)},
        {v6, mapped(0, 0, 0, 0)},
        {v6, Address{}},
    };
    for (const auto &step : steps) {
        std::optional<uid_t> owner;
        for (const Row &row : step.rows) {
            if (!row.isListener || row.localAddress != step.address)
                continue;
            if (owner && *owner != row.user)
                return std::nullopt;
            owner = row.user;
        }
        if (owner)
            return owner;
    }
    return std::nullopt;
}

std::optional<uid_t> SocketOwner::connectionOwner(quint16 peerPort, quint16 ownPort)
{
    const DiagAnswer answer = ask(requestFor(peerPort, htonl(INADDR_LOOPBACK), ownPort));
    if (!answer.isAnswered)
        return connectionOwnerInTables(readTable(u"/proc/net/tcp"_s), readTable(u"/proc/net/tcp6"_s), peerPort,
                                       ownPort);
    // Where there is no such connection the kernel gives the listener.
    const auto &row = answer.row;
    if (!row || row->idiag_state != TCP_ESTABLISHED || row->idiag_inode == 0 ||
        row->id.idiag_sport != htons(peerPort) || row->id.idiag_dport != htons(ownPort))
        return std::nullopt;
    return row->idiag_uid;
}

std::optional<uid_t> SocketOwner::listenerOwner(quint16 port)
{
    // No connection has a remote end without address and port, so what is found is the listener that would take
    // one.
    const DiagAnswer answer = ask(requestFor(port, htonl(INADDR_ANY), 0));
    if (!answer.isAnswered)
        return listenerOwnerInTables(readTable(u"/proc/net/tcp"_s), readTable(u"/proc/net/tcp6"_s), port);
    const auto &row = answer.row;
    if (!row || row->idiag_state != TCP_LISTEN || row->id.idiag_sport != htons(port))
        return std::nullopt;
    return row->idiag_uid;
}

bool SocketOwner::kernelAnswers()
{
    return knowsSockets;
}

bool SocketOwner::isTrusted(std::optional<uid_t> owner)
{
    return owner && (*owner == 0 || *owner == getuid());
}

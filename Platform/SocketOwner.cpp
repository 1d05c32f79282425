#include "Platform/SocketOwner.h"

#include <QFile>
#include <QList>

#include <algorithm>
#include <array>
#include <cstring>

#include <unistd.h>

namespace
{
using Address = std::array<quint8, 16>;

constexpr qint64 MaxTableBytes = 64 * 1024 * 1024; // some 400,000 sockets

struct Listener {
    Address address{}; // IPv4 in its IPv6-mapped form
    quint16 port = 0;
    uid_t user = 0;
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

std::optional<Listener> parseLine(const QByteArray &line)
{
    enum Column { Local = 1, State = 3, User = 7 };
    static const QByteArray ListenState = QByteArrayLiteral("0A");
    const QList<QByteArray> columns = line.simplified().split(' ');
    if (columns.size() <= User || columns[State] != ListenState)
        return std::nullopt;
    const QList<QByteArray> local = columns[Local].split(':');
    const auto address = parseAddress(local.first());
    bool portOk = false;
    bool userOk = false;
    const quint16 port = local.last().toUShort(&portOk, 16);
    const uid_t user = columns[User].toUInt(&userOk);
    if (local.size() != 2 || !address || !portOk || !userOk)
        return std::nullopt;
    return Listener{*address, port, user};
}

void collect(const QByteArray &table, quint16 port, QList<Listener> &listeners)
{
    for (const QByteArray &line : table.split('\n')) {
        const auto listener = parseLine(line);
        if (listener && listener->port == port)
            listeners.append(*listener);
    }
}

QByteArray readTable(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(MaxTableBytes) : QByteArray();
}
} // namespace

std::optional<uid_t> SocketOwner::ownerInTables(const QByteArray &tcp, const QByteArray &tcp6, quint16 port)
{
    QList<Listener> v4;
    QList<Listener> v6;
    collect(tcp, port, v4);
    collect(tcp6, port, v6);
    const struct {
        const QList<Listener> &listeners;
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
        for (const Listener &listener : step.listeners) {
            if (listener.address != step.address)
                continue;
            if (owner && *owner != listener.user)
                return std::nullopt;
            owner = listener.user;
        }
        if (owner)
            return owner;
    }
    return std::nullopt;
}

std::optional<uid_t> SocketOwner::listenerOwner(quint16 port)
{
    return ownerInTables(readTable(QStringLiteral("/proc/net/tcp")),
                         readTable(QStringLiteral("/proc/net/tcp6")), port);
}

bool SocketOwner::isTrusted(std::optional<uid_t> owner)
{
    return owner && (*owner == 0 || *owner == getuid());
}

#include "Messaging/SocketAddress.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>

#include <cstring>
#include <memory>

namespace
{
constexpr qsizetype PortDigits = 8;

SocketAddress address(const in_addr &host, quint16 port)
{
    SocketAddress result;
    auto *const v4 = reinterpret_cast<sockaddr_in *>(&result.storage);
    v4->sin_family = AF_INET;
    v4->sin_port = htons(port);
    v4->sin_addr = host;
    result.length = sizeof *v4;
    return result;
}

SocketAddress address(const in6_addr &host, quint16 port)
{
    SocketAddress result;
    auto *const v6 = reinterpret_cast<sockaddr_in6 *>(&result.storage);
    v6->sin6_family = AF_INET6;
    v6->sin6_port = htons(port);
    v6->sin6_addr = host;
    result.length = sizeof *v6;
    return result;
}

SocketAddresses ask(const QString &host, quint16 port, int flags, int *error)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = flags | AI_NUMERICSERV;
    char service[PortDigits];
    qsnprintf(service, sizeof service, "%u", static_cast<unsigned>(port));

    addrinfo *list = nullptr;
    *error = ::getaddrinfo(host.toUtf8().constData(), service, &hints, &list);
    const std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)> owner(list, &::freeaddrinfo);
    SocketAddresses result;
    for (const addrinfo *entry = *error == 0 ? list : nullptr; entry; entry = entry->ai_next) {
        auto &slot = entry->ai_family == AF_INET ? result.v4 : result.v6;
        if (slot || (entry->ai_family != AF_INET && entry->ai_family != AF_INET6))
            continue;
        slot.emplace();
        std::memcpy(&slot->storage, entry->ai_addr, entry->ai_addrlen);
        slot->length = entry->ai_addrlen;
    }
    return result;
}
} // namespace

QString SocketAddress::host() const
{
    char text[NI_MAXHOST];
    if (::getnameinfo(data(), length, text, sizeof text, nullptr, 0, NI_NUMERICHOST) != 0)
        return {};
    return QString::fromLatin1(text);
}

quint16 SocketAddress::port() const
{
    // Both families keep the port at the same place.
    return ntohs(reinterpret_cast<const sockaddr_in *>(&storage)->sin_port);
}

SocketAddresses addressesWithoutLookUp(const QString &host, quint16 port)
{
    if (host == u"localhost" || host == u"loopback")
        return {address(in_addr{htonl(INADDR_LOOPBACK)}, port), address(in6addr_loopback, port)};
    // The usual forms are read here; the resolver also knows scopes and shortened IPv4, but takes its time.
    const QByteArray text = host.toUtf8();
    in_addr v4{};
    if (::inet_pton(AF_INET, text.constData(), &v4) == 1)
        return {address(v4, port), std::nullopt};
    in6_addr v6{};
    if (::inet_pton(AF_INET6, text.constData(), &v6) == 1)
        return {std::nullopt, address(v6, port)};
    int error = 0;
    return ask(host, port, AI_NUMERICHOST, &error);
}

SocketAddresses lookUpAddresses(const QString &host, quint16 port, int *error)
{
    return ask(host, port, 0, error);
}

bool isConnectedToItself(int fd)
{
    SocketAddress here, there;
    here.length = there.length = sizeof here.storage;
    return ::getsockname(fd, reinterpret_cast<sockaddr *>(&here.storage), &here.length) == 0 &&
           ::getpeername(fd, reinterpret_cast<sockaddr *>(&there.storage), &there.length) == 0 &&
           here.port() == there.port() && here.host() == there.host();
}

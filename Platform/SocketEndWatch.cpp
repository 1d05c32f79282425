#include "Platform/SocketEndWatch.h"

#include "Platform/SocketOwner.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstddef>
#include <utility>

#include <linux/filter.h>
#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{
constexpr unsigned groupBit(unsigned group)
{
    return 1U << (group - 1);
}

/// Lets through what tells of sockets at that port, so that no other costs a wake-up.
bool keepOnly(int fd, quint16 port)
{
    constexpr unsigned PortPlace =
        NLMSG_HDRLEN + offsetof(inet_diag_msg, id) + offsetof(inet_diag_sockid, idiag_sport);
    std::array<sock_filter, 4> steps{{BPF_STMT(BPF_LD | BPF_H | BPF_ABS, PortPlace),
                                      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, port, 0, 1),
                                      BPF_STMT(BPF_RET | BPF_K, ~0U), BPF_STMT(BPF_RET | BPF_K, 0)}};
    const sock_fprog program{static_cast<unsigned short>(steps.size()), steps.data()};
    return ::setsockopt(fd, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program) == 0;
}

/// True when there was news, or when some was lost.
bool takeNews(int fd)
{
    std::array<char, 4096> news{};
    bool any = false;
    for (int round = 0; round < 64; ++round) {
        if (::recv(fd, news.data(), news.size(), MSG_DONTWAIT) < 0 && errno != ENOBUFS)
            break;
        any = true;
    }
    return any;
}
} // namespace

struct SocketEndWatch::Channel {
    explicit Channel(int descriptor) : fd(descriptor) {}
    ~Channel()
    {
        if (notifier) {
            notifier->setEnabled(false);
            notifier.release()->deleteLater(); // it may be the one that is calling
        }
        ::close(fd);
    }
    Channel(const Channel &) = delete;

    const int fd;
    std::unique_ptr<QSocketNotifier> notifier;
};

SocketEndWatch::SocketEndWatch(std::unique_ptr<Channel> channel) : m_channel(std::move(channel))
{
}

SocketEndWatch::~SocketEndWatch() = default;

std::unique_ptr<SocketEndWatch> SocketEndWatch::start(quint16 port, std::function<void()> ended)
{
    // The kernel lets its events be waited for also where it has none.
    const int fd = SocketOwner::kernelAnswers()
                       ? ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_SOCK_DIAG)
                       : -1;
    if (fd < 0)
        return nullptr;
    auto channel = std::make_unique<Channel>(fd);
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = groupBit(SKNLGRP_INET_TCP_DESTROY) | groupBit(SKNLGRP_INET6_TCP_DESTROY);
    if (!keepOnly(fd, port) || ::bind(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        return nullptr;
    channel->notifier = std::make_unique<QSocketNotifier>(fd, QSocketNotifier::Read);
    QObject::connect(channel->notifier.get(), &QSocketNotifier::activated, channel->notifier.get(),
                     [fd, ended = std::move(ended)] {
                         const auto tell = ended; // the watch, and this closure with it, may go in its own call
                         if (takeNews(fd))
                             tell();
                     });
    return std::unique_ptr<SocketEndWatch>(new SocketEndWatch(std::move(channel)));
}

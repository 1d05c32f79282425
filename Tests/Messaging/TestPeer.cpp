#include "Tests/Messaging/TestPeer.h"

#include "Tests/WaitUntil.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

TestPeer::TestPeer(int fd) : m_fd(fd)
{
    const int on = 1;
    ::setsockopt(m_fd, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

TestPeer::~TestPeer()
{
    if (m_fd >= 0)
        ::close(m_fd);
}

void TestPeer::send(const QByteArray &bytes)
{
    qsizetype done = 0;
    EXPECT_TRUE(waitUntil([&] {
        const auto count = ::send(m_fd, bytes.constData() + done, static_cast<size_t>(bytes.size() - done),
                                  MSG_NOSIGNAL | MSG_DONTWAIT);
        done += std::max<qsizetype>(count, 0);
        return done == bytes.size() || (count < 0 && errno != EAGAIN);
    }));
}

void TestPeer::dribble(const QByteArray &bytes)
{
    for (const char byte : bytes) {
        send(QByteArray(1, byte));
        QCoreApplication::processEvents();
    }
}

QByteArray TestPeer::receive(qsizetype count)
{
    QByteArray bytes;
    bool ended = false;
    EXPECT_TRUE(waitUntil([&] {
        char buffer[65536];
        const auto wanted = std::min<qsizetype>(count - bytes.size(), sizeof buffer);
        const auto got = ::recv(m_fd, buffer, static_cast<size_t>(wanted), MSG_DONTWAIT);
        ended = got == 0 || (got < 0 && errno != EAGAIN);
        if (got > 0)
            bytes.append(buffer, got);
        return ended || bytes.size() == count;
    }));
    return bytes;
}

QByteArray TestPeer::receiveFrame()
{
    const QByteArray header = receive(8);
    if (header.size() != 8)
        return {};
    quint64 size = 0;
    std::memcpy(&size, header.constData(), sizeof size);
    return receive(static_cast<qsizetype>(size));
}

bool TestPeer::seesEnd()
{
    return waitUntil([this] {
        char buffer[4096];
        const auto got = ::recv(m_fd, buffer, sizeof buffer, MSG_DONTWAIT);
        return got == 0 || (got < 0 && errno != EAGAIN);
    });
}

void TestPeer::reset()
{
    const linger abrupt{1, 0};
    ::setsockopt(m_fd, SOL_SOCKET, SO_LINGER, &abrupt, sizeof abrupt);
    ::close(std::exchange(m_fd, -1));
}

QByteArray TestPeer::frame(const QByteArray &payload)
{
    const auto size = static_cast<quint64>(payload.size());
    return QByteArray(reinterpret_cast<const char *>(&size), sizeof size) + payload;
}

int TestListener::boundSocket(quint16 *port)
{
    const int fd = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    sockaddr_in in{};
    in.sin_family = AF_INET;
    in.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto *const address = reinterpret_cast<sockaddr *>(&in);
    socklen_t size = sizeof in;
    EXPECT_EQ(::bind(fd, address, size), 0) << std::strerror(errno);
    EXPECT_EQ(::getsockname(fd, address, &size), 0);
    *port = ntohs(in.sin_port);
    return fd;
}

TestListener::TestListener()
{
    m_fd = boundSocket(&m_port);
    EXPECT_EQ(::listen(m_fd, 16), 0) << std::strerror(errno);
}

TestListener::~TestListener()
{
    ::close(m_fd);
}

std::unique_ptr<TestPeer> TestListener::acceptNow()
{
    const int fd = ::accept4(m_fd, nullptr, nullptr, SOCK_CLOEXEC);
    return fd < 0 ? nullptr : std::make_unique<TestPeer>(fd);
}

std::unique_ptr<TestPeer> TestListener::accept()
{
    std::unique_ptr<TestPeer> peer;
    EXPECT_TRUE(waitUntil([&] { return (peer = acceptNow()) != nullptr; }));
    return peer;
}

quint16 TestListener::closedPort()
{
    quint16 port = 0;
    ::close(boundSocket(&port));
    return port;
}

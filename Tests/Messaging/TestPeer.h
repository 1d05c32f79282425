#pragma once

#include <QByteArray>

#include <memory>
#include <optional>

/// The other end of a connection, in plain system calls. It refuses, hangs, dribbles or breaks off as it is
/// told; its calls never block for long.
class TestPeer
{
public:
    explicit TestPeer(int fd);
    ~TestPeer();

    /// Sends all of `bytes`, turning the main event loop while the connection is full.
    void send(const QByteArray &bytes);
    /// Sends one byte at a time, each as a segment of its own.
    void dribble(const QByteArray &bytes);
    /// Waits for exactly `count` bytes; fewer when the connection ends first.
    QByteArray receive(qsizetype count);
    /// Waits for one frame and gives its payload.
    QByteArray receiveFrame();
    /// True once the other side has closed.
    bool seesEnd();
    /// Closes with a reset instead of an orderly end.
    void reset();

    /// `payload` with its 8-byte length in front.
    static QByteArray frame(const QByteArray &payload);

private:
    int m_fd;
};

/// A port of the loopback address that listens; closed and free again at its end.
class TestListener
{
public:
    TestListener();
    ~TestListener();

    [[nodiscard]] quint16 port() const { return m_port; }
    /// Waits for a connection, turning the main event loop; null when none comes.
    std::unique_ptr<TestPeer> accept();
    /// A connection if one waits already.
    std::unique_ptr<TestPeer> acceptNow();

    /// A socket bound to a free port, not listening.
    static int boundSocket(quint16 *port);
    /// A port of this machine that nobody listens on.
    static quint16 closedPort();

private:
    int m_fd = -1;
    quint16 m_port = 0;
};

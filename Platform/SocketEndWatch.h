#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>

/// Tells when a TCP socket at a port of this machine has gone: the listener, or one of its connections. So
/// nobody has to ask again and again whether it is still there. Main thread only.
class SocketEndWatch
{
public:
    /// `ended` is called from the event loop, also where the kernel has lost count of what has gone. Null where
    /// the system can't tell.
    [[nodiscard]] static std::unique_ptr<SocketEndWatch> start(quint16 port, std::function<void()> ended);
    ~SocketEndWatch();
    SocketEndWatch(const SocketEndWatch &) = delete;
    SocketEndWatch &operator=(const SocketEndWatch &) = delete;

private:
    struct Channel;
    explicit SocketEndWatch(std::unique_ptr<Channel> channel);
    std::unique_ptr<Channel> m_channel;
};

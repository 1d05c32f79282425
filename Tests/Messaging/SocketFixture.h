#pragma once

#include "Messaging/GCDAsyncSocket.h"
#include "Platform/MainThread.h"
#include "Tests/Messaging/TestPeer.h"
#include "Tests/WaitUntil.h"

#include <gmock/gmock.h>

#include <functional>
#include <string>
#include <vector>

inline constexpr auto NoTimeout = GCDAsyncSocket::NoTimeout;

/// Writes down what a socket tells, one line for each call.
class SocketListener : public GCDAsyncSocketDelegate
{
public:
    std::vector<std::string> told;
    std::optional<SocketError> error;
    std::vector<QByteArray> data;
    std::function<void(GCDAsyncSocket &)> onData;
    std::vector<double> extensions; // one answer for each time-out, then none
    bool onMain = true;
    bool ended = false;

    void socketDidConnectToHost(GCDAsyncSocket &, const QString &host, quint16 port) override
    {
        note("connected " + host.toStdString() + (port ? "" : " without a port"));
    }
    void socketDidReadData(GCDAsyncSocket &socket, QByteArray bytes, qint64 tag) override
    {
        note("read " + std::to_string(tag) + ":" + (bytes.size() < 100 ? bytes.toStdString() : "..."));
        data.push_back(std::move(bytes));
        if (onData)
            onData(socket);
    }
    void socketDidWriteDataWithTag(GCDAsyncSocket &, qint64 tag) override
    {
        note("wrote " + std::to_string(tag));
    }
    SocketSeconds socketShouldTimeoutReadWithTag(GCDAsyncSocket &, qint64 tag, SocketSeconds elapsed,
                                                 qsizetype done) override
    {
        return askedAbout("read", tag, elapsed, done);
    }
    SocketSeconds socketShouldTimeoutWriteWithTag(GCDAsyncSocket &, qint64 tag, SocketSeconds elapsed,
                                                  qsizetype) override
    {
        return askedAbout("write", tag, elapsed, 0);
    }
    void socketDidDisconnectWithError(GCDAsyncSocket &, const std::optional<SocketError> &why) override
    {
        note("closed" + (why ? " " + std::to_string(why->code) : std::string()));
        error = why;
        ended = true;
    }

private:
    SocketSeconds askedAbout(const char *what, qint64 tag, SocketSeconds elapsed, qsizetype done)
    {
        note("late " + std::string(what) + " " + std::to_string(tag) + " after " +
             std::to_string(int(elapsed.count() * 1000)) + " ms with " + std::to_string(done));
        if (extensions.empty())
            return {};
        const double next = extensions.front();
        extensions.erase(extensions.begin());
        return SocketSeconds(next);
    }
    void note(std::string line)
    {
        onMain = onMain && isMainThread();
        told.push_back(std::move(line));
    }
};

class GCDAsyncSocketTest : public testing::Test
{
protected:
    std::unique_ptr<TestPeer> connectToPeer()
    {
        EXPECT_TRUE(
            socket->connectToHost(QStringLiteral("127.0.0.1"), peers.port(), SocketSeconds(5), nullptr));
        return peers.accept();
    }
    /// A socket that nothing has happened to yet.
    void renew()
    {
        listener = std::make_shared<SocketListener>();
        socket = GCDAsyncSocket::create(listener, DispatchQueue::main());
    }
    bool waitForLines(size_t count)
    {
        return waitUntil([&] { return listener->told.size() >= count; });
    }
    bool waitForEnd()
    {
        return waitUntil([&] { return listener->ended; });
    }

    TestListener peers;
    std::shared_ptr<SocketListener> listener = std::make_shared<SocketListener>();
    std::shared_ptr<GCDAsyncSocket> socket = GCDAsyncSocket::create(listener, DispatchQueue::main());
};

#include "Messaging/GCDAsyncSocket.h"
#include "Platform/MainThread.h"
#include "Tests/Messaging/TestPeer.h"
#include "Tests/WaitUntil.h"

#include <QDir>

#include <gmock/gmock.h>

#include <sys/socket.h>
#include <unistd.h>

#include <limits>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Seconds = GCDAsyncSocket::Seconds;

namespace
{
constexpr auto NoTimeout = GCDAsyncSocket::NoTimeout;

/// Writes down what a socket tells, one line for each call.
class SocketListener : public GCDAsyncSocketDelegate
{
public:
    std::vector<std::string> told;
    std::optional<SocketError> error;
    bool ended = false;
    std::function<void(GCDAsyncSocket &)> onData; ///< after the line is written down

    void socketDidConnectToHost(GCDAsyncSocket &, const QString &host, quint16 port) override
    {
        note("connected " + host.toStdString() + (port ? "" : " without a port"));
    }
    void socketDidReadData(GCDAsyncSocket &telling, QByteArray bytes, qint64 tag) override
    {
        note("read " + std::to_string(tag) + ":" + bytes.toStdString());
        if (onData)
            onData(telling);
    }
    void socketDidWriteDataWithTag(GCDAsyncSocket &, qint64 tag) override
    {
        note("wrote " + std::to_string(tag));
    }
    void socketDidDisconnectWithError(GCDAsyncSocket &, const std::optional<SocketError> &why) override
    {
        note("closed" + (why ? " " + std::to_string(why->code) : std::string()));
        error = why;
        ended = true;
    }

private:
    void note(std::string line)
    {
        EXPECT_TRUE(isMainThread()) << line;
        told.push_back(std::move(line));
    }
};

class GCDAsyncSocketTest : public testing::Test
{
protected:
    std::unique_ptr<TestPeer> connectToPeer()
    {
        EXPECT_TRUE(socket->connectToHost(u"127.0.0.1"_s, peers.port(), SocketSeconds(5), nullptr));
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

int openDescriptors()
{
    return int(QDir(u"/proc/self/fd"_s).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size());
}
} // namespace

TEST_F(GCDAsyncSocketTest, AConnectThatIsNotAnsweredTimesOut)
{
    // A listener whose backlog is full answers no further connect.
    quint16 port = 0;
    const int full = TestListener::boundSocket(&port);
    ASSERT_EQ(::listen(full, 0), 0);
    const auto fillers = std::make_shared<SocketListener>();
    std::vector<std::shared_ptr<GCDAsyncSocket>> backlog;
    for (int i = 0; i < 4; ++i) {
        backlog.push_back(GCDAsyncSocket::create(fillers, DispatchQueue::main()));
        backlog.back()->connectToHost(u"127.0.0.1"_s, port, NoTimeout, nullptr);
    }
    ASSERT_TRUE(socket->connectToHost(u"127.0.0.1"_s, port, Seconds(0.02), nullptr));
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(*listener->error,
              (SocketError{u"GCDAsyncSocketErrorDomain"_s, 3, u"Attempt to connect to host timed out"_s, {}}));
    ::close(full);
}

TEST_F(GCDAsyncSocketTest, AConnectionOfASocketWithItselfIsToldApart)
{
    // What the system does when it gives out the very port that is being tried, here brought about on purpose.
    quint16 port = 0;
    const int fd = TestListener::boundSocket(&port);
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    ASSERT_EQ(::getsockname(fd, reinterpret_cast<sockaddr *>(&address), &size), 0);
    EXPECT_FALSE(isConnectedToItself(fd));
    std::ignore = ::connect(fd, reinterpret_cast<sockaddr *>(&address), size); // it goes on behind the call
    EXPECT_TRUE(waitUntil([&] { return isConnectedToItself(fd); }));
    ::close(fd);
}

TEST_F(GCDAsyncSocketTest, TellsHowTheConnectionEnded)
{
    const std::tuple<const char *, qsizetype, bool, std::vector<std::string>> rows[] = {
        {"between reads", 2, false, {"connected 127.0.0.1", "read 1:ab", "closed 7"}},
        {"inside a read", 3, false, {"connected 127.0.0.1", "closed 7"}},
        {"nobody reads", 0, false, {"connected 127.0.0.1", "closed 7"}},
        {"reset inside a read", 3, true, {"connected 127.0.0.1", "closed 104"}},
        {"reset while nobody reads", 0, true, {"connected 127.0.0.1", "closed 104"}},
    };
    for (const auto &[name, length, resets, told] : rows) {
        renew();
        auto peer = connectToPeer();
        ASSERT_TRUE(waitForLines(1));
        socket->readDataToLength(length, NoTimeout, 1);
        peer->send(length ? "ab" : ""); // bytes that wait for a read put off the end
        if (resets)
            peer->reset();
        peer.reset();
        ASSERT_TRUE(waitForEnd());
        EXPECT_EQ(listener->told, told) << name;
    }
    renew();
    ASSERT_TRUE(socket->connectToHost(u"127.0.0.1"_s, TestListener::closedPort(), Seconds(5), nullptr));
    EXPECT_TRUE(listener->told.empty()) << "told inside the call";
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(listener->told, ElementsAre("closed 111"));
}

TEST_F(GCDAsyncSocketTest, ALocalDisconnectIsTheLastWordAndNoError)
{
    const auto peer = connectToPeer();
    ASSERT_TRUE(waitForLines(1));
    socket->readDataToLength(10, NoTimeout, 1);
    socket->writeData("bye", NoTimeout, 2);
    socket->disconnect();
    socket->disconnect();
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "wrote 2", "closed"));
    EXPECT_EQ(peer->receive(4), "bye");
}

TEST_F(GCDAsyncSocketTest, ClosesOnceWhatIsQueuedIsDoneAndConnectsAgain)
{
    auto peer = connectToPeer();
    socket->readDataToLength(1, NoTimeout, 1);
    socket->readDataToLength(1, NoTimeout, 2);
    socket->disconnectAfterReading();
    peer->send("ab");
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "read 1:a", "read 2:b", "closed"));
    EXPECT_FALSE(socket->isConnected());
    socket->writeData("last words", NoTimeout, 3);
    peer = connectToPeer();
    socket->disconnectAfterWriting();
    EXPECT_EQ(peer->receive(100), "last words");
}

TEST_F(GCDAsyncSocketTest, LeavesNoDescriptorBehind)
{
    connectToPeer(); // opens what stays open for the whole program
    const int before = openDescriptors();
    for (int i = 0; i < 50; ++i) {
        const auto client = GCDAsyncSocket::create(listener, DispatchQueue::main());
        const bool listening = i % 2 == 0;
        client->connectToHost(u"127.0.0.1"_s, listening ? peers.port() : TestListener::closedPort(), Seconds(5),
                              nullptr);
        client->readDataToLength(1, Seconds(5), 0);
        if (listening)
            peers.accept();
    }
    socket.reset();
    ASSERT_TRUE(waitUntil([&] { return openDescriptors() < before; }));
}

TEST_F(GCDAsyncSocketTest, GivesEachReadItsOwnBytesHoweverTheyCome)
{
    for (const bool inPieces : {false, true}) {
        renew();
        // Queued before the connection stands, of all kinds, and some that ask for nothing.
        for (const int nothing : {0, -5})
            socket->readDataToLength(nothing, NoTimeout, 9);
        socket->readDataToData("", NoTimeout, 0, 9);
        socket->readDataToData("long", NoTimeout, 3, 9);
        socket->writeData("", NoTimeout, 9);
        socket->readDataToLength(3, NoTimeout, 1);
        socket->readDataToData("\r\n", NoTimeout, 0, 2);
        socket->readDataToLength(1, NoTimeout, 3);
        socket->readDataToData("ab", NoTimeout, 6, 4);
        const auto peer = connectToPeer();
        inPieces ? peer->dribble("xyzline\r\r\nQaaaab!?") : peer->send("xyzline\r\r\nQaaaab!?");
        ASSERT_TRUE(waitForLines(5));
        EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "read 1:xyz", "read 2:line\r\r\n",
                                                "read 3:Q", "read 4:aaaab"))
            << (inPieces ? "byte by byte" : "in one segment");
        socket->readDataToData("\n", NoTimeout, 6, 5);
        peer->send("long lines");
        ASSERT_TRUE(waitForEnd());
        EXPECT_EQ(listener->error->code, 6) << "a terminator that does not come in time";
    }
}

TEST_F(GCDAsyncSocketTest, ALengthThatIsOnlyClaimedTakesNoMemory)
{
    const auto peer = connectToPeer();
    socket->readDataToLength(std::numeric_limits<qsizetype>::max() - 7, NoTimeout, 1);
    peer->send(QByteArray(100000, 'x'));
    peer->reset();
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "closed 104"));
}

TEST_F(GCDAsyncSocketTest, AWriteThatFillsTheConnectionGoesOnWhenThereIsRoom)
{
    const QByteArray bytes(16 * 1024 * 1024, 'w');
    socket->writeData("early", NoTimeout, 0);
    const auto peer = connectToPeer();
    socket->writeData(bytes, NoTimeout, 1);
    socket->writeData("end", NoTimeout, 2);
    ASSERT_TRUE(waitForLines(2));
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "wrote 0"));
    EXPECT_TRUE(peer->receive(bytes.size() + 8) == "early" + bytes + "end");
    ASSERT_TRUE(waitForLines(4));
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "wrote 0", "wrote 1", "wrote 2"));
}

TEST_F(GCDAsyncSocketTest, AWriteToAPeerThatIsGoneEndsInAnErrorAndNoSignal)
{
    const auto peer = connectToPeer();
    ASSERT_TRUE(waitForLines(1));
    peer->reset();
    socket->writeData("x", NoTimeout, 1);
    socket->writeData("y", NoTimeout, 2);
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(listener->error->code == EPIPE || listener->error->code == ECONNRESET);
}

TEST_F(GCDAsyncSocketTest, TellsInOrderWhatHappensWhileItTells)
{
    const std::tuple<const char *, bool, bool, std::vector<std::string>> rows[] = {
        {"reads", false, false, {"read 1:a", "read 2:b", "read 3:c", "closed"}},
        {"a write first", true, false, {"read 1:a", "wrote 9", "read 2:b", "read 3:c", "closed"}},
        {"events within the call", false, true, {"read 1:a", "read 2:b", "read 3:c", "closed"}},
    };
    for (const auto &[name, writes, takesEvents, told] : rows) {
        renew();
        listener->onData = [&, writes = writes, takesEvents = takesEvents](GCDAsyncSocket &telling) {
            if (listener->told.size() > 2)
                return;
            if (writes)
                telling.writeData("w", NoTimeout, 9);
            telling.readDataToLength(1, NoTimeout, 2);
            telling.readDataToLength(1, NoTimeout, 3);
            telling.disconnect();
            if (takesEvents) {
                EXPECT_TRUE(waitForEnd());
            }
        };
        const auto peer = connectToPeer();
        peer->send("abc");
        ASSERT_TRUE(waitForLines(1));
        socket->readDataToLength(1, NoTimeout, 1);
        ASSERT_TRUE(waitForEnd());
        listener->told.erase(listener->told.begin()); // that it has connected
        EXPECT_EQ(listener->told, told) << name;
    }
}

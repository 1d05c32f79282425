#include "Tests/Messaging/SocketFixture.h"

#include <QDir>

#include <sys/socket.h>
#include <unistd.h>

#include <thread>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Seconds = GCDAsyncSocket::Seconds;

namespace
{
int openDescriptors()
{
    return int(QDir(u"/proc/self/fd"_s).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size());
}
} // namespace

// ---- Connecting ---------------------------------------------------------------------------------------------

TEST_F(GCDAsyncSocketTest, RefusesCallsThatCannotWork)
{
    const auto noDelegate = GCDAsyncSocket::create({}, DispatchQueue::main());
    const auto noQueue = GCDAsyncSocket::create(listener, std::nullopt);
    const auto noFamily = GCDAsyncSocket::create(listener, DispatchQueue::main());
    noFamily->setIPv4Enabled(false);
    noFamily->setIPv6Enabled(false);
    const auto busy = GCDAsyncSocket::create(listener, DispatchQueue::main());
    ASSERT_TRUE(busy->connectToHost(u"127.0.0.1"_s, peers.port(), NoTimeout, nullptr));

    const std::tuple<const char *, std::shared_ptr<GCDAsyncSocket>, QString, int, const char *> rows[] = {
        {"no delegate", noDelegate, u"127.0.0.1"_s, 1,
         "Attempting to connect without a delegate. Set a delegate first."},
        {"no delegate queue", noQueue, u"127.0.0.1"_s, 1,
         "Attempting to connect without a delegate queue. Set a delegate queue first."},
        {"in use", busy, u"127.0.0.1"_s, 1,
         "Attempting to connect while connected or accepting connections. Disconnect first."},
        {"empty host", socket, u""_s, 2,
         "Invalid host parameter (nil or \"\"). Should be a domain name or IP address string."},
        {"no family", noFamily, u"127.0.0.1"_s, 1,
         "Both IPv4 and IPv6 have been disabled. Must enable at least one protocol first."},
    };
    for (const auto &[name, client, host, code, text] : rows) {
        SCOPED_TRACE(name);
        SocketError error;
        EXPECT_FALSE(client->connectToHost(host, peers.port(), Seconds(5), &error));
        EXPECT_EQ(error.domain, u"GCDAsyncSocketErrorDomain"_s);
        EXPECT_EQ(error.code, code);
        EXPECT_EQ(error.description.toStdString(), text);
    }
    // A refused call changes nothing: the busy socket connects, the others say nothing, not even of an end.
    socket->disconnect();
    socket->disconnectAfterReading();
    ASSERT_TRUE(waitForLines(1));
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1"));
    EXPECT_TRUE(busy->isConnected());
}

TEST_F(GCDAsyncSocketTest, ConnectsToEitherFamily)
{
    using Family = TestListener::Family;
    const struct {
        const char *name;
        Family listens;
        QString host;
        bool ipv4, ipv6, preferIPv4;
        const char *told;
    } rows[] = {
        {"digits", Family::V4, u"127.0.0.1"_s, true, true, true, "connected 127.0.0.1"},
        {"digits of the other family", Family::V6, u"::1"_s, true, true, true, "connected ::1"},
        {"name", Family::V4, u"localhost"_s, true, true, true, "connected 127.0.0.1"},
        {"other name", Family::V4, u"loopback"_s, true, true, true, "connected 127.0.0.1"},
        {"the preferred one does not listen", Family::V6, u"localhost"_s, true, true, true, "connected ::1"},
        {"the other one is preferred and does not listen", Family::V4, u"localhost"_s, true, true, false,
         "connected 127.0.0.1"},
        {"one switched off", Family::V6, u"localhost"_s, false, true, true, "connected ::1"},
        {"digits of a family that is switched off", Family::V4, u"127.0.0.1"_s, false, true, true, "closed 8"},
        {"one switched off and the other not listening", Family::V4, u"localhost"_s, false, true, true,
         "closed 111"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        TestListener there(row.listens);
        listener->told.clear();
        const auto client = GCDAsyncSocket::create(listener, DispatchQueue::main());
        client->setIPv4Enabled(row.ipv4);
        client->setIPv6Enabled(row.ipv6);
        client->setIPv4PreferredOverIPv6(row.preferIPv4);
        ASSERT_TRUE(client->connectToHost(row.host, there.port(), Seconds(5), nullptr));
        EXPECT_TRUE(listener->told.empty()) << "told inside the call";
        ASSERT_TRUE(waitForLines(1));
        EXPECT_THAT(listener->told, ElementsAre(row.told));
    }
    EXPECT_TRUE(listener->onMain);
}

TEST_F(GCDAsyncSocketTest, AFailedConnectGivesTheErrorOfTheSystemOrTheResolver)
{
    ASSERT_TRUE(socket->connectToHost(u"127.0.0.1"_s, TestListener::closedPort(), Seconds(5), nullptr));
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(listener->told, ElementsAre("closed 111"));
    EXPECT_EQ(*listener->error, (SocketError{u"NSPOSIXErrorDomain"_s, ECONNREFUSED, u"Connection refused"_s,
                                             u"Error in connect() function"_s}));
    EXPECT_FALSE(socket->isConnected());
    renew();
    // A name that can stand in no zone, so no server is asked.
    ASSERT_TRUE(socket->connectToHost(QString(300, u'x'), 80, Seconds(5), nullptr));
    ASSERT_TRUE(waitForEnd());
    EXPECT_EQ(listener->error->domain, u"kCFStreamErrorDomainNetDB"_s);
    EXPECT_LT(listener->error->code, 0);
    EXPECT_FALSE(listener->error->description.isEmpty());
}

TEST_F(GCDAsyncSocketTest, AConnectThatIsNotAnsweredTimesOut)
{
    // A listener whose backlog is full answers no further connect.
    quint16 port = 0;
    const int full = TestListener::boundSocket(TestListener::Family::V4, &port);
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
    const int fd = TestListener::boundSocket(TestListener::Family::V4, &port);
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    ASSERT_EQ(::getsockname(fd, reinterpret_cast<sockaddr *>(&address), &size), 0);
    EXPECT_FALSE(isConnectedToItself(fd));
    std::ignore = ::connect(fd, reinterpret_cast<sockaddr *>(&address), size); // it goes on behind the call
    EXPECT_TRUE(waitUntil([&] { return isConnectedToItself(fd); }));
    ::close(fd);
}

// ---- The end ------------------------------------------------------------------------------------------------

TEST_F(GCDAsyncSocketTest, TellsHowTheConnectionEnded)
{
    const struct {
        const char *name;
        QByteArray sent;
        qsizetype length; // of the one read; 0 for none
        bool reset;
        std::vector<std::string> told;
    } rows[] = {
        {"between reads", "ab", 2, false, {"read 1:ab", "closed 7"}},
        {"inside a read", "a", 2, false, {"closed 7"}},
        {"before any byte", "", 2, false, {"closed 7"}},
        {"nobody reads", "", 0, false, {"closed 7"}},
        {"reset inside a read", "", 2, true, {"closed 104"}},
        {"reset while nobody reads", "", 0, true, {"closed 104"}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        renew();
        auto peer = connectToPeer();
        ASSERT_TRUE(waitForLines(1));
        socket->readDataToLength(row.length, NoTimeout, 1);
        peer->send(row.sent);
        if (row.reset)
            peer->reset();
        peer.reset();
        ASSERT_TRUE(waitForEnd());
        listener->told.erase(listener->told.begin());
        EXPECT_EQ(listener->told, row.told);
        if (row.reset)
            EXPECT_EQ(listener->error->reason, u"Error in read() function"_s);
        else
            EXPECT_EQ(listener->error->description, u"Socket closed by remote peer"_s);
    }
}

TEST_F(GCDAsyncSocketTest, BytesThatCameBeforeTheEndStillServeReads)
{
    auto peer = connectToPeer();
    socket->readDataToLength(1, NoTimeout, 1);
    peer->send("abcd");
    ASSERT_TRUE(waitForLines(2));
    peer.reset();
    socket->readDataToLength(1, NoTimeout, 2);
    socket->readDataWithTimeout(NoTimeout, 3);
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(listener->told,
                ElementsAre("connected 127.0.0.1", "read 1:a", "read 2:b", "read 3:cd", "closed 7"));
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

TEST_F(GCDAsyncSocketTest, ClosesOnceWhatIsQueuedIsDone)
{
    const auto peer = connectToPeer();
    socket->readDataToLength(1, NoTimeout, 1);
    socket->readDataToLength(1, NoTimeout, 2);
    socket->disconnectAfterReading();
    peer->send("ab");
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "read 1:a", "read 2:b", "closed"));

    EXPECT_FALSE(socket->isConnected());

    listener->ended = false;
    listener->told.clear();
    socket->writeData("last words", NoTimeout, 3);
    socket->readDataToLength(1, NoTimeout, 4);
    const auto second = connectToPeer();
    second->send("c");
    ASSERT_TRUE(waitForLines(3));
    EXPECT_THAT(listener->told, testing::UnorderedElementsAre("connected 127.0.0.1", "wrote 3", "read 4:c"));
    socket->disconnectAfterWriting();
    EXPECT_EQ(second->receive(100), "last words");
    ASSERT_TRUE(waitForEnd());
}

TEST_F(GCDAsyncSocketTest, LeavesNoDescriptorBehind)
{
    { // what is opened once for the whole program
        const auto peer = connectToPeer();
        socket->disconnect();
    }
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
    ASSERT_TRUE(waitUntil([&] { return openDescriptors() == before; }));
}

// ---- Threads ------------------------------------------------------------------------------------------------

TEST_F(GCDAsyncSocketTest, CallsMayComeFromAnyThread)
{
    const auto peer = connectToPeer();
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([this] {
            for (int i = 0; i < 200; ++i) {
                socket->writeData("w", NoTimeout, 0);
                socket->readDataToLength(1, NoTimeout, 0);
                EXPECT_TRUE(socket->isConnected());
            }
        });
    }
    peer->send(QByteArray(800, 'r'));
    for (auto &thread : threads)
        thread.join();
    EXPECT_EQ(peer->receive(800).size(), 800);
    ASSERT_TRUE(waitForLines(1601));
    EXPECT_EQ(listener->data.size(), 800u);
    EXPECT_TRUE(listener->onMain);
}

TEST_F(GCDAsyncSocketTest, TheDelegateMayBeToldOnTheQueueOfTheSocketItself)
{
    const DispatchQueue both("both");
    const auto shared = GCDAsyncSocket::create(listener, both, both);
    ASSERT_TRUE(shared->connectToHost(u"127.0.0.1"_s, peers.port(), Seconds(5), nullptr));
    const auto peer = peers.accept();
    listener->onData = [](GCDAsyncSocket &from) { EXPECT_TRUE(from.isConnected()); };
    const auto hasLines = [&](size_t count) {
        size_t lines = 0;
        both.sync([&] { lines = listener->told.size(); });
        return lines == count;
    };
    shared->readDataToLength(1, NoTimeout, 1);
    peer->send("a");
    ASSERT_TRUE(waitUntil([&] { return hasLines(2); }));
    both.sync([&] { EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "read 1:a")); });
    shared->disconnect();
    ASSERT_TRUE(waitUntil([&] { return hasLines(3); }));
}

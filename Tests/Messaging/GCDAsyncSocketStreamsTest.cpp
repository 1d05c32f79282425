#include "Tests/Messaging/SocketFixture.h"

#include <limits>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using Seconds = GCDAsyncSocket::Seconds;

// ---- Reads --------------------------------------------------------------------------------------------------

TEST_F(GCDAsyncSocketTest, GivesEachReadItsOwnBytesHoweverTheyCome)
{
    for (const bool inPieces : {false, true}) {
        SCOPED_TRACE(inPieces ? "byte by byte" : "in one segment");
        renew();
        // Queued before the connection stands, of all kinds.
        socket->readDataToLength(3, NoTimeout, 1);
        socket->readDataToData("\r\n", NoTimeout, 0, 2);
        socket->readDataToLength(1, NoTimeout, 3);
        socket->readDataToData("ab", NoTimeout, 6, 4);
        socket->readDataToLength(2, NoTimeout, 5);
        const auto peer = connectToPeer();
        const QByteArray bytes = "xyzline\r\r\nQaaaab!?";
        if (inPieces)
            peer->dribble(bytes);
        else
            peer->send(bytes);
        ASSERT_TRUE(waitForLines(6));
        EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "read 1:xyz", "read 2:line\r\r\n",
                                                "read 3:Q", "read 4:aaaab", "read 5:!?"));
    }
}

TEST_F(GCDAsyncSocketTest, IgnoresReadsAndWritesThatAskForNothing)
{
    const auto peer = connectToPeer();
    socket->readDataToLength(0, NoTimeout, 1);
    socket->readDataToLength(-5, NoTimeout, 2);
    socket->readDataToData("", NoTimeout, 0, 3);
    socket->readDataToData("long", NoTimeout, 3, 4);
    socket->writeData("", NoTimeout, 5);
    socket->readDataToLength(1, NoTimeout, 6);
    peer->send("z");
    ASSERT_TRUE(waitForLines(2));
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "read 6:z"));
}

TEST_F(GCDAsyncSocketTest, ATerminatorThatDoesNotComeInTimeMaxesOut)
{
    const std::tuple<const char *, QByteArray, const char *> rows[] = {
        {"just fits", "abcde\n", "read 1:abcde\n"},
        {"one too far", "abcdef\n", "closed 6"},
        {"none", "abcdefghijkl", "closed 6"},
    };
    for (const auto &[name, bytes, told] : rows) {
        SCOPED_TRACE(name);
        renew();
        const auto peer = connectToPeer();
        socket->readDataToData("\n", NoTimeout, 6, 1);
        peer->dribble(bytes);
        ASSERT_TRUE(waitForLines(2));
        EXPECT_EQ(listener->told[1], told);
        if (listener->error) {
            EXPECT_EQ(listener->error->description, u"Read operation reached set maximum length"_s);
        }
    }
}

TEST_F(GCDAsyncSocketTest, LargeReadsArriveWholeWithRoomBehindThem)
{
    QByteArray bytes(3 * 1024 * 1024 + 17, Qt::Uninitialized);
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = char(i * 31 + i / 251);
    const auto peer = connectToPeer();
    socket->readDataToLength(bytes.size() - 1000, NoTimeout, 1);
    socket->readDataToLength(1000, NoTimeout, 2);
    peer->send(bytes);
    ASSERT_TRUE(waitForLines(3));
    ASSERT_EQ(listener->data.size(), 2u);
    EXPECT_TRUE(listener->data[0] + listener->data[1] == bytes);
    for (const QByteArray &part : listener->data)
        EXPECT_GE(part.capacity(), part.size() + 64);
}

TEST_F(GCDAsyncSocketTest, ALengthThatIsOnlyClaimedTakesNoMemory)
{
    const auto peer = connectToPeer();
    socket->readDataToLength(std::numeric_limits<qsizetype>::max() - 7, NoTimeout, 1);
    peer->send(QByteArray(100000, 'x'));
    peer->reset();
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(listener->data.empty());
}

TEST_F(GCDAsyncSocketTest, ThousandsOfQueuedReadsAreServedFromOneSegment)
{
    constexpr int Count = 20000; // a chain of calls this long would not fit on a stack
    for (int i = 0; i < Count; ++i)
        socket->readDataToLength(1, NoTimeout, i);
    const auto peer = connectToPeer();
    peer->send(QByteArray(Count, 'r'));
    ASSERT_TRUE(waitForLines(Count + 1));
    EXPECT_EQ(listener->told.back(), "read " + std::to_string(Count - 1) + ":r");
}

TEST_F(GCDAsyncSocketTest, TheDelegateMayReadOnOrLeaveFromWithinACall)
{
    const auto peer = connectToPeer();
    listener->onData = [](GCDAsyncSocket &from) { from.readDataToLength(2, NoTimeout, 7); };
    socket->readDataToLength(2, NoTimeout, 7);
    peer->send("aabb");
    ASSERT_TRUE(waitForLines(3));
    listener->onData = [this](GCDAsyncSocket &) { socket.reset(); };
    peer->send("cc");
    EXPECT_TRUE(peer->seesEnd());
    EXPECT_EQ(listener->data.size(), 3u);
    EXPECT_FALSE(listener->ended) << "a dropped socket says nothing";
}

// ---- Writes -------------------------------------------------------------------------------------------------

TEST_F(GCDAsyncSocketTest, AWriteThatFillsTheConnectionGoesOnWhenThereIsRoom)
{
    const QByteArray bytes(16 * 1024 * 1024, 'w');
    socket->writeData("queued before the connection", NoTimeout, 0);
    const auto peer = connectToPeer();
    socket->writeData(bytes, NoTimeout, 1);
    socket->writeData("end", NoTimeout, 2);
    ASSERT_TRUE(waitForLines(2));
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "wrote 0"));
    EXPECT_EQ(peer->receive(28), "queued before the connection");
    EXPECT_TRUE(peer->receive(bytes.size() + 3) == bytes + "end");
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

// ---- Time-outs ----------------------------------------------------------------------------------------------

TEST_F(GCDAsyncSocketTest, ALateReadEndsTheConnectionUnlessTheDelegateGivesItMoreTime)
{
    listener->extensions = {0.01, 3600};
    const auto peer = connectToPeer();
    socket->readDataToLength(2, Seconds(0.02), 9);
    ASSERT_TRUE(waitForLines(3));
    peer->send("ab");
    ASSERT_TRUE(waitForLines(4));
    EXPECT_TRUE(socket->isConnected());
    peer->send("c");
    socket->readDataToLength(2, Seconds(0.02), 10);
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "late read 9 after 20 ms with 0",
                                            "late read 9 after 30 ms with 0", "read 9:ab",
                                            "late read 10 after 20 ms with 1", "closed 4"));
    EXPECT_EQ(listener->error->description, u"Read operation timed out"_s);
}

TEST_F(GCDAsyncSocketTest, ALateWriteIsExtendedOnceAndThenEndsTheConnection)
{
    listener->extensions = {0.01};
    const auto peer = connectToPeer();
    socket->writeData(QByteArray(32 * 1024 * 1024, 'w'), Seconds(0.02), 8);
    ASSERT_TRUE(waitForEnd());
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "late write 8 after 20 ms with 0",
                                            "late write 8 after 30 ms with 0", "closed 5"));
    EXPECT_EQ(listener->error->description, u"Write operation timed out"_s);
}

TEST_F(GCDAsyncSocketTest, AReadInTimeLeavesNoTimerBehind)
{
    const auto peer = connectToPeer();
    peer->send("ab");
    socket->readDataToLength(1, Seconds(0.01), 1);
    ASSERT_TRUE(waitForLines(2));
    socket->readDataToLength(2, Seconds(3600), 2);
    bool later = false;
    DispatchQueue::main().after(std::chrono::milliseconds(20), [&] { later = true; });
    ASSERT_TRUE(waitUntil([&] { return later; }));
    EXPECT_THAT(listener->told, ElementsAre("connected 127.0.0.1", "read 1:a"));
    EXPECT_TRUE(socket->isConnected());
}

#include "Messaging/DaemonChannel.h"
#include "Tests/Messaging/TestPeer.h"
#include "Tests/WaitUntil.h"

#include <gmock/gmock.h>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
const QByteArray EmptyPing = R"({"data":{},"type":"PingFromMonitor"})";

/// Writes down what the channel tells, one line for each call.
class Owner : public DaemonChannelOwner
{
public:
    std::vector<std::string> told;
    QVariantMap details;
    int connects = 0;
    int disconnects = 0;
    std::function<void()> onMessage;
    std::function<void()> onDisconnect;

    void channelDidConnect() override
    {
        ++connects;
        told.push_back("connect");
    }
    QVariantMap pingDetails() override
    {
        told.push_back("ping");
        return details;
    }
    void channelDidDisconnect() override
    {
        ++disconnects;
        if (onDisconnect)
            onDisconnect();
    }
    void didReceiveProgress(const DaemonMessage &message) override
    {
        told.push_back("progress " + std::to_string(message.progressType().value_or(-1)));
        notify();
    }
    void didReceiveMessage(const QVariantList &arguments) override
    {
        std::string line = "message";
        for (const QVariant &argument : arguments)
            line += " " + argument.toString().toStdString();
        told.push_back(line);
        notify();
    }
    void didRefusePayload(const QString &reason) override
    {
        told.push_back("refused");
        EXPECT_FALSE(reason.isEmpty());
        notify();
    }

private:
    void notify()
    {
        if (onMessage)
            onMessage();
    }
};

class DaemonChannelTest : public testing::Test
{
protected:
    /// Takes the connection, and the ping that opens it.
    std::unique_ptr<TestPeer> meet()
    {
        auto peer = daemon.accept();
        EXPECT_EQ(peer->receiveFrame().toStdString(), expectedPing.toStdString());
        return peer;
    }
    std::unique_ptr<TestPeer> startAndMeet()
    {
        port = daemon.port();
        channel->start();
        return meet();
    }
    void startInVain()
    {
        port = TestListener::closedPort();
        channel->start();
        ASSERT_TRUE(waitForRetry());
    }
    bool waitForRetry()
    {
        return waitUntil([&] { return manualClock.runningTimers() == 1; });
    }
    bool waitForLines(size_t count)
    {
        return waitUntil([&] { return owner.told.size() >= count; });
    }
    void letTheLoopTurn()
    {
        bool turned = false;
        QTimer::singleShot(5, [&] { turned = true; });
        EXPECT_TRUE(waitUntil([&] { return turned; }));
    }
    void makeChannel()
    {
        channel = std::make_unique<DaemonChannel>(owner, manualClock, [this] {
            ++portReads;
            return port;
        });
    }

    void SetUp() override { makeChannel(); }

    TestListener daemon;
    ManualClock manualClock{QDateTime(QDate(2026, 11, 22), QTime(12, 0))};
    Owner owner;
    QByteArray expectedPing = EmptyPing;
    std::optional<qint64> port;
    int portReads = 0;
    std::unique_ptr<DaemonChannel> channel;
};
} // namespace

TEST_F(DaemonChannelTest, OpensWithThePingAndRoutesWhatComes)
{
    owner.details = {{u"profileName"_s, u"ann"_s}, {u"inProgress"_s, QVariantList{u"job"_s}}};
    expectedPing = R"({"data":{"inProgress":["job"],"profileName":"ann"},"type":"PingFromMonitor"})";
    const auto peer = startAndMeet();
    EXPECT_TRUE(channel->isConnected());
    // The first two in one segment.
    peer->send(TestPeer::frame(R"({"type":"operationProgress","progressType":1,"userName":"ann"})") +
               TestPeer::frame(R"({"type":"SetToolTip","data":"idle","UserName":"ann"})"));
    peer->dribble(TestPeer::frame(R"({"type":"operationProgress","data":{"progressType":6}})"));
    ASSERT_TRUE(waitForLines(5));
    EXPECT_THAT(owner.told,
                ElementsAre("connect", "ping", "progress 1", "message SetToolTip idle ann", "progress 6"));
}

TEST_F(DaemonChannelTest, SkipsWhatItCannotReadAndReadsOn)
{
    const std::tuple<const char *, QByteArray> rows[] = {
        {"empty frame", TestPeer::frame("")},
        {"no JSON", TestPeer::frame("garbage")},
        {"no object", TestPeer::frame("[]")},
        {"cut JSON", TestPeer::frame(R"({"type":)")},
    };
    const auto peer = startAndMeet();
    for (const auto &[name, frame] : rows) {
        SCOPED_TRACE(name);
        owner.told.clear();
        peer->send(frame + TestPeer::frame(R"({"type":"good"})"));
        ASSERT_TRUE(waitForLines(2));
        EXPECT_THAT(owner.told, ElementsAre("refused", "message good"));
    }
    EXPECT_EQ(owner.disconnects, 0);
}

TEST_F(DaemonChannelTest, AFrameOverTheLimitEndsTheConnectionAndOneAtItDoesNot)
{
    constexpr quint64 SixteenMiB = 16777216;
    const std::tuple<const char *, quint64, bool> rows[] = {
        {"at the limit", SixteenMiB, false},
        {"one over", SixteenMiB + 1, true},
        {"all bits", ~quint64(0), true},
        {"negative when read as signed", quint64(1) << 63, true},
    };
    port = daemon.port();
    channel->start();
    for (const auto &[name, size, ends] : rows) {
        SCOPED_TRACE(name);
        const auto peer = meet();
        owner.told.clear();
        peer->send(QByteArray(reinterpret_cast<const char *>(&size), sizeof size));
        if (ends) {
            EXPECT_TRUE(peer->seesEnd());
            EXPECT_THAT(owner.told, ElementsAre("refused"));
        } else {
            peer->send(R"({"type":"great","data":")" + QByteArray(qsizetype(SixteenMiB) - 26, 'x') + R"("})");
            ASSERT_TRUE(waitForLines(1));
            EXPECT_TRUE(QByteArray::fromStdString(owner.told[0]).startsWith("message great xxx"));
            channel->sendData({{u"type"_s, u"still there"_s}}, 0);
            EXPECT_EQ(peer->receiveFrame(), R"({"type":"still there"})");
            peer->reset();
        }
        ASSERT_TRUE(waitForRetry());
        manualClock.advance(10ms);
    }
}

TEST_F(DaemonChannelTest, NoUsablePortMeansNoAttemptAndNoRetry)
{
    const std::optional<qint64> rows[] = {std::nullopt, 0, -1, 65536, qint64(1) << 32 | 80};
    for (const auto &row : rows) {
        SCOPED_TRACE(row.value_or(-999));
        port = row;
        makeChannel();
        channel->start();
        channel->sendData({{u"type"_s, u"lost"_s}}, 1);
        letTheLoopTurn();
        EXPECT_EQ(owner.disconnects, 0);
        EXPECT_EQ(manualClock.runningTimers(), 0);
        EXPECT_FALSE(channel->isConnected());
    }
    EXPECT_EQ(portReads, int(std::size(rows))) << "sending with a socket there looked for the port again";
}

TEST_F(DaemonChannelTest, ReconnectsWithoutEndTenMillisecondsAfterEachFailure)
{
    port = TestListener::closedPort();
    channel->start();
    for (int i = 1; i <= 5; ++i) {
        ASSERT_TRUE(waitUntil([&] { return owner.disconnects == i && manualClock.runningTimers() == 1; }));
        EXPECT_EQ(portReads, i);
        manualClock.advance(9ms);
        letTheLoopTurn();
        EXPECT_EQ(portReads, i) << "tried again too early";
        manualClock.advance(1ms);
        EXPECT_EQ(portReads, i + 1);
    }
    EXPECT_THAT(owner.told, IsEmpty());
    // The daemon comes back on another port.
    port = daemon.port();
    ASSERT_TRUE(waitForRetry());
    manualClock.advance(10ms);
    meet();
    EXPECT_EQ(owner.connects, 1);
}

TEST_F(DaemonChannelTest, StopsTryingWhenThePortIsNoLongerPublished)
{
    startInVain();
    port.reset();
    manualClock.advance(10s);
    letTheLoopTurn();
    EXPECT_EQ(portReads, 2);
    EXPECT_EQ(owner.disconnects, 1);
}

TEST_F(DaemonChannelTest, LosesAndFindsTheDaemonAgain)
{
    port = daemon.port();
    channel->start();
    for (int i = 1; i <= 3; ++i) {
        auto peer = meet();
        peer->send(TestPeer::frame(R"({"type":"cut in its middle"})").chopped(5));
        peer.reset();
        ASSERT_TRUE(waitUntil([&] { return owner.disconnects == i && manualClock.runningTimers() == 1; }));
        EXPECT_FALSE(channel->isConnected());
        manualClock.advance(10ms);
    }
    EXPECT_THAT(owner.told, ElementsAre("connect", "ping", "connect", "ping", "connect", "ping"));
}

TEST_F(DaemonChannelTest, AMessageSentBetweenTwoAttemptsConnectsAndTheTimerLeavesItAlone)
{
    startInVain();
    port = daemon.port();
    channel->sendData({{u"type"_s, u"early"_s}}, 1);
    EXPECT_EQ(portReads, 2);
    manualClock.advance(10ms);
    EXPECT_EQ(portReads, 2) << "the timer made a second socket";
    const auto peer = daemon.accept();
    EXPECT_EQ(peer->receiveFrame(), R"({"type":"early"})");
    EXPECT_EQ(peer->receiveFrame(), EmptyPing);
    letTheLoopTurn();
    EXPECT_EQ(daemon.acceptNow(), nullptr);
}

TEST_F(DaemonChannelTest, MessagesLeaveWholeAndInOrder)
{
    port = daemon.port();
    channel->start();
    channel->sendData({{u"type"_s, u"before the connection"_s}}, 1);
    channel->send(OutboundMessages::setPauseState());
    const auto peer = daemon.accept();
    const QByteArray wire = "\x20\0\0\0\0\0\0\0{\"type\":\"before the connection\"}"
                            "\x22\0\0\0\0\0\0\0{\"data\":\"\",\"type\":\"SetPauseState\"}"_ba;
    EXPECT_EQ(peer->receive(wire.size()), wire);
    EXPECT_EQ(peer->receiveFrame(), EmptyPing);
}

TEST_F(DaemonChannelTest, AMessageThatJsonCannotHoldIsDropped)
{
    const auto peer = startAndMeet();
    const QVariant rows[] = {
        QDateTime::currentDateTime(),
        std::numeric_limits<double>::quiet_NaN(),
        std::numeric_limits<double>::infinity(),
        QByteArray("bytes"),
        QVariantList{1, QVariantMap{{u"deep"_s, QDate(2026, 11, 22)}}},
        QVariant(),
    };
    for (const QVariant &row : rows)
        channel->sendData({{u"value"_s, row}}, 1);
    channel->sendData({{u"value"_s, QVariantList{1, true, 2.5, u"ü"_s, QVariant::fromValue(nullptr)}}}, 1);
    EXPECT_EQ(peer->receiveFrame().toStdString(), R"({"value":[1,true,2.5,"ü",null]})");
}

TEST_F(DaemonChannelTest, TheOwnerMayDestroyTheChannelFromWithinACall)
{
    const std::tuple<const char *, QByteArray> rows[] = {
        {"report", TestPeer::frame(R"({"type":"operationProgress"})")},
        {"message", TestPeer::frame(R"({"type":"a"})")},
        {"empty frame", TestPeer::frame("")},
        {"oversized frame", QByteArray(8, '\xff')},
        {"the end", {}},
    };
    for (const auto &[name, sent] : rows) {
        SCOPED_TRACE(name);
        makeChannel();
        owner.onMessage = owner.onDisconnect = [this] { channel.reset(); };
        const auto peer = startAndMeet();
        peer->send(sent + TestPeer::frame(R"({"type":"never told"})"));
        if (sent.isEmpty())
            peer->reset();
        ASSERT_TRUE(waitUntil([&] { return !channel; }));
        letTheLoopTurn();
        EXPECT_EQ(daemon.acceptNow(), nullptr);
        EXPECT_EQ(manualClock.runningTimers(), 0);
    }
}

#include "Messaging/DaemonChannel.h"
#include "Tests/Messaging/TestPeer.h"
#include "Tests/WaitUntil.h"

#include <gmock/gmock.h>

#include <cmath>
#include <unistd.h>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace
{
const QByteArray EmptyPing = R"({"data":{},"type":"PingFromMonitor"})";

/// Writes down what the channel tells, one line for each call.
class Owner : public DaemonChannelOwner
{
public:
    std::vector<std::string> told;
    QVariantMap details;
    int ends = 0;                         // of connections and attempts
    std::function<void()> onCall = [] {}; // at each message, refusal and end

    void channelDidConnect() override { told.push_back("connect"); }
    QVariantMap pingDetails() override
    {
        told.push_back("ping");
        return details;
    }
    void channelDidDisconnect() override
    {
        ++ends;
        onCall();
    }
    void didReceiveProgress(const DaemonMessage &message) override
    {
        note("progress " + std::to_string(message.progressType().value_or(-1)));
    }
    void didReceiveMessage(const QVariantList &arguments) override
    {
        note("message " + QVariant(arguments).toStringList().join(u' ').toStdString());
    }
    void didRefusePayload(const QString &reason) override { note(reason.isEmpty() ? "?" : "refused"); }

private:
    void note(std::string line)
    {
        told.push_back(std::move(line));
        onCall();
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
        ASSERT_TRUE(waitForEnd());
    }
    /// Waits for the next loss or failed attempt; the next attempt is due by then.
    bool waitForEnd()
    {
        return waitUntil([&] { return owner.ends > seenEnds; }) && ++seenEnds;
    }
    /// Fails attempt after attempt for that long, and tells how many there were.
    int attemptsIn(std::chrono::milliseconds period)
    {
        const int before = owner.ends;
        for (auto passed = 0ms; passed < period; passed += 10ms) {
            const int reads = portReads;
            manualClock.advance(10ms);
            if (portReads > reads) {
                EXPECT_TRUE(waitForEnd());
            }
        }
        return owner.ends - before;
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
        channel = std::make_unique<DaemonChannel>(
            owner, manualClock,
            [this] {
                ++portReads;
                return port;
            },
            PeerOwners{[this](quint16, quint16) { return ++ownerLooks, peerUser; },
                       [this](quint16) { return listenerUser; },
                       [this](quint16, std::function<void()> ended) {
                           listenerEnded = std::move(ended);
                           return canWatch ? std::make_shared<int>() : std::shared_ptr<int>();
                       }});
    }

    DaemonChannelTest() { makeChannel(); }

    TestListener daemon;
    ManualClock manualClock{QDateTime(QDate(2026, 11, 22), QTime(12, 0))};
    Owner owner;
    QByteArray expectedPing = EmptyPing;
    std::optional<qint64> port;
    int portReads = 0;
    int seenEnds = 0;
    std::optional<uid_t> peerUser = getuid();
    std::optional<uid_t> listenerUser = getuid();
    int ownerLooks = 0;
    bool canWatch = true;
    std::function<void()> listenerEnded;
    std::unique_ptr<DaemonChannel> channel;
};
} // namespace

TEST_F(DaemonChannelTest, OpensWithThePingRoutesWhatComesAndSkipsWhatItCannotRead)
{
    owner.details = {{u"profileName"_s, u"ann"_s}, {u"inProgress"_s, QVariantList{u"job"_s}}};
    expectedPing = R"({"data":{"inProgress":["job"],"profileName":"ann"},"type":"PingFromMonitor"})";
    const auto peer = startAndMeet();
    // In one segment, and byte by byte.
    peer->send(TestPeer::frame(R"({"type":"operationProgress","progressType":1,"userName":"ann"})") +
               TestPeer::frame("") + TestPeer::frame(R"({"type":)") + TestPeer::frame("[]") +
               TestPeer::frame(R"({"type":"SetToolTip","data":"idle","UserName":"ann"})"));
    peer->dribble(TestPeer::frame(R"({"type":"operationProgress","data":{"progressType":6}})"));
    ASSERT_TRUE(waitForLines(8));
    EXPECT_THAT(owner.told, ElementsAre("connect", "ping", "progress 1", "refused", "refused", "refused",
                                        "message SetToolTip idle ann", "progress 6"));
    EXPECT_EQ(owner.ends, 0);
}

TEST_F(DaemonChannelTest, AFrameOverTheLimitEndsTheConnectionAndOneAtItDoesNot)
{
    constexpr quint64 SixteenMiB = 16777216;
    port = daemon.port();
    channel->start();
    for (const quint64 size : {SixteenMiB + 1, ~quint64(0), quint64(1) << 63}) {
        const auto peer = meet();
        owner.told.clear();
        peer->send(QByteArray(reinterpret_cast<const char *>(&size), sizeof size));
        EXPECT_TRUE(peer->seesEnd()) << size;
        EXPECT_THAT(owner.told, ElementsAre("refused")) << size;
        ASSERT_TRUE(waitForEnd());
        manualClock.advance(100ms);
    }
    const auto peer = meet();
    owner.told.clear();
    const QByteArray great =
        R"({"type":"great","data":")" + QByteArray(qsizetype(SixteenMiB) - 26, 'x') + R"("})";
    peer->send(TestPeer::frame(great) + TestPeer::frame(R"({"type":"next"})"));
    ASSERT_TRUE(waitForLines(2));
    EXPECT_EQ(owner.told[0].size(), 14 + SixteenMiB - 26);
    EXPECT_EQ(owner.told[1], "message next");
}

TEST_F(DaemonChannelTest, IsIdleWhileNoUsablePortIsPublished)
{
    for (const std::optional<qint64> row :
         {std::optional<qint64>(), {0}, {-1}, {65536}, {qint64(1) << 32 | 80}}) {
        port = row;
        makeChannel();
        channel->start();
        channel->sendData({{u"type"_s, u"lost"_s}}, 1);
        manualClock.advance(10s);
        letTheLoopTurn();
        EXPECT_EQ(owner.ends, 0) << row.value_or(-999);
        EXPECT_EQ(manualClock.runningTimers(), 0) << row.value_or(-999);
        // The daemon comes up, which the file or the pass tells.
        port = daemon.port();
        row ? channel->portFileDidChange() : channel->look();
        meet(); // and nothing of what was lost is in front of the ping
        channel.reset();
    }
}

TEST_F(DaemonChannelTest, TriesQuicklyForThreeSecondsAndThenAtAnEasyPaceWhileAPortIsPublished)
{
    startInVain();
    EXPECT_EQ(attemptsIn(3000ms), 300);
    EXPECT_EQ(attemptsIn(3000ms), 30);
    channel->look();
    EXPECT_EQ(attemptsIn(1000ms), 10) << "a pass is no change of the file";
    for (int i = 0; i < 3; ++i) {
        channel->portFileDidChange(); // which doesn't put off the next attempt
        manualClock.advance(4ms);
    }
    EXPECT_TRUE(waitForEnd());
    EXPECT_GE(attemptsIn(2990ms), 298);
    EXPECT_LE(attemptsIn(1000ms), 11);
    port.reset();
    manualClock.advance(10s);
    EXPECT_EQ(attemptsIn(10s), 0);
    EXPECT_EQ(manualClock.runningTimers(), 0);
    EXPECT_TRUE(owner.told.empty());
}

TEST_F(DaemonChannelTest, LosesAndFindsTheDaemonAgain)
{
    port = daemon.port();
    channel->start();
    manualClock.advance(4s); // the first quick period is over
    // Only one that lasted begins another, and not for one that is hung up in it.
    for (const auto &[lasted, pause] : {std::pair{0ms, 100ms}, {999ms, 100ms}, {1000ms, 10ms}, {0ms, 100ms}}) {
        auto peer = meet();
        manualClock.advance(lasted);
        peer->send(TestPeer::frame(R"({"type":"cut in its middle"})").chopped(5));
        peer.reset();
        ASSERT_TRUE(waitForEnd());
        EXPECT_FALSE(channel->isPeerTrusted());
        const int reads = portReads;
        manualClock.advance(pause - 1ms);
        EXPECT_EQ(portReads, reads) << "tried again too early after " << lasted.count();
        manualClock.advance(1ms);
        EXPECT_EQ(portReads, reads + 1) << "not tried again after " << lasted.count();
    }
    meet();
}

TEST_F(DaemonChannelTest, AnotherPublishedPortEndsTheConnection)
{
    TestListener other;
    const auto peer = startAndMeet();
    port.reset();
    channel->portFileDidChange(); // half written
    port = daemon.port();
    channel->portFileDidChange(); // the same again
    letTheLoopTurn();
    EXPECT_TRUE(channel->isConnected());
    port = other.port();
    channel->portFileDidChange();
    peer->send(TestPeer::frame(R"({"type":"too late"})"));
    EXPECT_TRUE(peer->seesEnd());
    ASSERT_TRUE(waitForEnd());
    manualClock.advance(10ms);
    EXPECT_EQ(other.accept()->receiveFrame(), EmptyPing);
    EXPECT_THAT(owner.told, ElementsAre("connect", "ping", "connect", "ping"));
}

TEST_F(DaemonChannelTest, TrustIsSettledOnceForEachConnection)
{
    const uid_t stranger = getuid() + 1;
    for (const uid_t user : {getuid(), uid_t(0), stranger}) {
        makeChannel();
        ownerLooks = 0;
        listenerUser = peerUser = user;
        const auto peer = startAndMeet();
        EXPECT_EQ(channel->isPeerTrusted(), user != stranger) << user;
        peerUser = user == stranger ? getuid() : stranger; // would be the answer now
        listenerUser.reset();                              // it stops listening
        channel->look();
        manualClock.advance(5s);
        peer->send(TestPeer::frame(R"({"type":"a"})"));
        ASSERT_TRUE(waitUntil([&] { return owner.told.back() == "message a"; }));
        EXPECT_EQ(channel->isPeerTrusted(), user != stranger) << user;
        EXPECT_EQ(ownerLooks, 1);
        EXPECT_TRUE(channel->isConnected());
    }
}

TEST_F(DaemonChannelTest, TrustWaitsForWhoeverAcceptsTheConnection)
{
    peerUser.reset();
    auto peer = startAndMeet();
    manualClock.advance(60s);
    EXPECT_FALSE(channel->isPeerTrusted());
    peerUser = 0;
    manualClock.advance(500ms);
    EXPECT_TRUE(channel->isPeerTrusted()) << "asked again, however late it accepts";

    peerUser.reset();
    ownerLooks = 0;
    peer.reset();
    ASSERT_TRUE(waitForEnd());
    manualClock.advance(100ms);
    peer = meet();
    manualClock.advance(60s);
    EXPECT_LE(ownerLooks, 130) << "twice a second";
    peerUser = 0;
    bool wasTrusted = false;
    owner.onCall = [&] { wasTrusted = channel->isPeerTrusted(); };
    peer->send(TestPeer::frame(R"({"type":"a"})"));
    ASSERT_TRUE(waitUntil([&] { return owner.told.back() == "message a"; }));
    EXPECT_TRUE(wasTrusted) << "who sends has accepted it, so the first message asks once more";
}

TEST_F(DaemonChannelTest, AListenerOfAnotherUserEndsTheConnectionWithinASecond)
{
    const uid_t own = getuid(), root = 0, stranger = own + 1, another = own + 2;
    const std::tuple<uid_t, uid_t, bool> rows[] = {{stranger, own, true},
                                                   {stranger, root, true},
                                                   {stranger, another, true},
                                                   {own, stranger, true},
                                                   {stranger, own, false}}; // where nothing tells of the end
    for (const auto &[before, after, isTold] : rows) {
        SCOPED_TRACE(after);
        canWatch = isTold;
        makeChannel();
        peerUser = listenerUser = before;
        auto peer = startAndMeet();
        manualClock.advance(5s);
        listenerUser.reset(); // it stops listening,
        if (isTold)
            listenerEnded();
        manualClock.advance(5s);
        EXPECT_TRUE(channel->isConnected());
        listenerUser = after; // and another takes its place
        manualClock.advance(1s);
        EXPECT_TRUE(peer->seesEnd());
        ASSERT_TRUE(waitForEnd());
        peerUser = after;
        manualClock.advance(10ms);
        peer = meet();
        EXPECT_EQ(channel->isPeerTrusted(), after == own || after == root);
        manualClock.advance(5s);
        EXPECT_TRUE(channel->isConnected());
    }
}

TEST_F(DaemonChannelTest, AListenerThatWasMadeByAnotherUserIsLeftOnce)
{
    listenerUser = 0;
    peerUser = 7; // who was handed root's listener
    port = daemon.port();
    channel->start();
    EXPECT_TRUE(daemon.accept()->seesEnd());
    ASSERT_TRUE(waitForEnd());
    manualClock.advance(10ms);
    auto peer = meet();
    manualClock.advance(10s);
    channel->look();
    letTheLoopTurn();
    EXPECT_TRUE(channel->isConnected());
    EXPECT_EQ(owner.ends, 1);
    peer.reset(); // who comes after an end that was not ours is looked at anew
    ASSERT_TRUE(waitForEnd());
    manualClock.advance(10ms);
    EXPECT_TRUE(daemon.accept()->seesEnd());
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

TEST_F(DaemonChannelTest, MessagesLeaveWholeAndInOrderButThoseThatJsonCannotHold)
{
    port = daemon.port();
    channel->start();
    channel->sendData({{u"type"_s, u"before the connection"_s}}, 1);
    const QVariantList deep{1, QVariantMap{{u"deep"_s, QDate(2026, 11, 22)}}};
    for (const QVariant &none :
         {QVariant(std::nan("")), QVariant(HUGE_VAL), QVariant("bytes"_ba), QVariant(deep), QVariant()})
        channel->sendData({{u"value"_s, none}}, 1);
    channel->sendData({{u"value"_s, QVariantList{1, true, 2.5, u"ü"_s, QVariant::fromValue(nullptr)}}}, 1);
    const auto peer = daemon.accept();
    const QByteArray wire = "\x20\0\0\0\0\0\0\0{\"type\":\"before the connection\"}"_ba;
    EXPECT_EQ(peer->receive(wire.size()), wire);
    EXPECT_EQ(peer->receiveFrame().toStdString(), R"({"value":[1,true,2.5,"ü",null]})");
    EXPECT_EQ(peer->receiveFrame(), EmptyPing);
}

TEST_F(DaemonChannelTest, TheOwnerMayDestroyTheChannelFromWithinACall)
{
    const QByteArray rows[] = {TestPeer::frame(R"({"type":"operationProgress"})"),
                               TestPeer::frame(R"({"type":"a"})"), TestPeer::frame(""), QByteArray(8, '\xff'),
                               QByteArray()}; // none: the end of the connection
    for (const QByteArray &sent : rows) {
        makeChannel();
        owner.onCall = [this] { channel.reset(); };
        const auto peer = startAndMeet();
        peer->send(sent + TestPeer::frame(R"({"type":"never told"})"));
        if (sent.isEmpty())
            peer->reset();
        ASSERT_TRUE(waitUntil([&] { return !channel; })) << sent.toStdString();
        letTheLoopTurn();
        EXPECT_EQ(daemon.acceptNow(), nullptr);
        EXPECT_EQ(manualClock.runningTimers(), 0) << sent.toStdString();
    }
}

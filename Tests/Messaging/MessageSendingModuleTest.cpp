#include "Messaging/MessageSendingModule.h"
#include "Tests/Support/Inbox.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <gtest/gtest.h>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr int Deadline = 30'000; // milliseconds; only a failing test waits so long
/// Long enough for no call to reach it on a slow machine, and short enough for the tests in which one must.
constexpr std::chrono::milliseconds NeverReached{Deadline};
constexpr std::chrono::milliseconds SoonReached{100};

/// Keeps what the module hands over.
class Recorder : public MessageSendingDelegate, public Inbox
{
public:
    void didReceiveIPCMessage(const QVariantList &array) override { add(array); }
};

/// The program at the other end. It lives on the thread of the test, so it answers while that thread waits.
class Peer : public QDBusVirtualObject
{
public:
    using Answer = std::function<void(const QDBusMessage &)>;

    Peer(const PrivateBus &bus, const QString &port) : client(bus)
    {
        EXPECT_TRUE(client.connection().registerVirtualObject(u"/port"_s, this));
        EXPECT_TRUE(client.connection().registerService(u"com.halvernet.Corvane.Port."_s + port));
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &) override
    {
        EXPECT_EQ(message.interface(), u"com.halvernet.Corvane.MessageSendingProtocol"_s);
        EXPECT_EQ(message.member(), u"didReceiveDataFromOtherProcess"_s);
        EXPECT_EQ(message.signature(), u"av"_s);
        message.arguments().constFirst().value<QDBusArgument>() >> received.emplace_back();
        answer(message);
        return true;
    }
    /// Waits for the message that comes at `place`, and gives its number.
    [[nodiscard]] QString number(std::size_t place) const
    {
        return QTest::qWaitFor([&] { return received.size() > place; }, Deadline)
                   ? received[place].value(1).toString()
                   : u"nothing came"_s;
    }

    BusClient client;
    const Answer reply = [this](const QDBusMessage &message) {
        client.connection().send(message.createReply());
    };
    Answer answer = reply;
    std::vector<QVariantList> received;
};

qsizetype threadCount()
{
    return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

class MessageSending : public testing::Test
{
protected:
    std::unique_ptr<MessageSendingModule> connected(std::chrono::milliseconds callLimit = NeverReached) const
    {
        auto module = std::make_unique<MessageSendingModule>(
            delegate, MessageSendingModule::Settings{.callLimit = callLimit, .busRetryPace = 5ms});
        module->setupConnection(u"SyncMDx"_s, u"SyncDMx"_s);
        return module;
    }
    /// A peer's call of the module's port.
    QDBusMessage callMonitor(const QVariantList &array) const
    {
        const BusClient client(bus);
        auto message = QDBusMessage::createMethodCall(u"com.halvernet.Corvane.Port.SyncMDx"_s, u"/port"_s,
                                                      u"com.halvernet.Corvane.MessageSendingProtocol"_s,
                                                      u"didReceiveDataFromOtherProcess"_s);
        message << QVariant(array);
        return client.connection().call(message, QDBus::Block, Deadline);
    }

    TemporaryHome home;
    PrivateBus bus{home.path(QString())};
    std::shared_ptr<Recorder> delegate = std::make_shared<Recorder>();
};
} // namespace

TEST(SyncPortNames, EndInMachineAndUser)
{
    EXPECT_EQ(syncPortNames(u"0b9f"_s, u"ann"_s).monitor, u"SyncMD0b9fann"_s);
    EXPECT_EQ(syncPortNames(u"0b9f"_s, u"ann"_s).syncDaemon, u"SyncDM0b9fann"_s);
    EXPECT_EQ(syncPortNames(std::nullopt, u"ann"_s).monitor, u"SyncMDann"_s);
}

TEST_F(MessageSending, SendsFourValuesInTheOrderOfTheCalls)
{
    const Peer peer(bus, u"SyncDMx"_s);
    const auto module = connected();
    module->sendIPCMessage(u"Pause Sync"_s, 502, false);
    module->sendIPCMessage(QVariantMap{{u"Username"_s, u"Ann"_s}, {u"isTQL"_s, true}}, 506, false);
    ASSERT_EQ(peer.number(1), u"506"_s);
    module->sendIPCMessage(u"es"_s, 5001, true);
    ASSERT_EQ(peer.number(2), u"5001"_s);
    EXPECT_EQ(peer.received[0], (QVariantList{u"Pause Sync"_s, u"502"_s, u"SyncMDx"_s, u"SyncDMx"_s}));
    QVariantMap record;
    peer.received[1].constFirst().value<QDBusArgument>() >> record;
    EXPECT_EQ(record, (QVariantMap{{u"Username"_s, u"Ann"_s}, {u"isTQL"_s, true}}));
}

TEST_F(MessageSending, HandsArraysToTheDelegateOnAnotherThreadWhileThereIsOne)
{
    const auto module = connected();
    const QVariantList array{u"line"_s, u"500"_s, u"a"_s, u"b"_s};
    EXPECT_EQ(callMonitor(array).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(delegate->arrays(), std::vector{array});
    EXPECT_FALSE(delegate->wasOnMainThread());
    delegate.reset();
    EXPECT_EQ(callMonitor({u"to nobody"_s}).type(), QDBusMessage::ReplyMessage);
}

TEST_F(MessageSending, ConnectsAnewAfterACallThatFailed)
{
    auto peer = std::make_unique<Peer>(bus, u"SyncDMx"_s);
    std::optional<QDBusMessage> unanswered;
    const std::tuple<const char *, Peer::Answer, std::chrono::milliseconds> rows[] = {
        {"hangs", [&](const QDBusMessage &message) { unanswered = message; }, SoonReached},
        {"refuses",
         [&](const QDBusMessage &message) {
             peer->client.connection().send(message.createErrorReply(QDBusError::Failed, u"no"_s));
         },
         NeverReached},
        {"dies", [&](const QDBusMessage &) { peer->client.leave(); }, NeverReached},
    };
    for (const auto &[name, failure, callLimit] : rows) {
        const auto module = connected(callLimit);
        peer->received.clear();
        peer->answer = failure;
        module->sendIPCMessage(u"first"_s, 502, false);
        ASSERT_EQ(peer->number(0), u"502"_s);
        if (!peer->client.connection().isConnected())
            peer = std::make_unique<Peer>(bus, u"SyncDMx"_s);
        peer->received.clear();
        peer->answer = peer->reply;
        module->sendIPCMessage(u"second"_s, 503, false); // goes when the limit of the first is over
        EXPECT_EQ(peer->number(0), u"503"_s) << name << ": the first is not sent again";
        if (unanswered)
            peer->reply(*std::exchange(unanswered, std::nullopt)); // too late
        module->sendIPCMessage(u"third"_s, 508, false);
        EXPECT_EQ(peer->number(1), u"508"_s) << name;
    }
}

TEST_F(MessageSending, DoesNotWaitForAPeerThatHangs)
{
    Peer peer(bus, u"SyncDMx"_s);
    peer.answer = [](const QDBusMessage &) {};
    auto module = connected(NeverReached);
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 5000; ++i)
        module->sendIPCMessage(u"the first hangs, others wait or are lost"_s, 503, false);
    EXPECT_EQ(peer.number(0), u"503"_s);
    const qsizetype threadsBefore = threadCount();
    module.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return threadCount() <= threadsBefore - 2; }, Deadline / 2))
        << "the call is given up, and both threads end";
    EXPECT_LT(timer.elapsed(), Deadline);
    EXPECT_EQ(peer.received.size(), 1U);
}

TEST_F(MessageSending, ClosesThePortOnTerminationOnlyWhileDataIsReceived)
{
    const auto module = connected();
    const auto reachable = [this] { return callMonitor({}).type() == QDBusMessage::ReplyMessage; };
    EXPECT_TRUE(module->applicationShouldTerminate());
    module->closeIPCConnection();
    EXPECT_TRUE(reachable());
    module->setCurrentlyReceivingData();
    EXPECT_FALSE(module->applicationShouldTerminate());
    EXPECT_FALSE(reachable());
    module->resetCurrentlyReceivingData();
    EXPECT_TRUE(module->applicationShouldTerminate());
    // Another takes the same names; its port goes by the name alone.
    const auto next = connected();
    EXPECT_TRUE(reachable());
    MessageSendingModule::closeConnection(u"SyncMDx"_s);
    EXPECT_FALSE(reachable());
}

TEST_F(MessageSending, OutlivesTheBusAndGoesOnWhenItComesBack)
{
    const auto module = connected();
    bus.stop();
    module->sendIPCMessage(u"lost"_s, 503, false);
    bus.start();
    ASSERT_TRUE(waitUntil([&] { return callMonitor({}).type() == QDBusMessage::ReplyMessage; }));
    const Peer later(bus, u"SyncDMx"_s);
    module->sendIPCMessage(u"after"_s, 508, false);
    EXPECT_EQ(later.number(0), u"508"_s);
    EXPECT_EQ(std::signal(SIGPIPE, SIG_IGN), SIG_IGN) << "a broken pipe must not end the process";
}

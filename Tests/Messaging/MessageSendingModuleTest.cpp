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
    enum class Answer { AtOnce, Never, WithAnError, ByDying };

    Peer(const PrivateBus &bus, const QString &port) : m_client(bus)
    {
        EXPECT_TRUE(m_client.connection().registerVirtualObject(u"/port"_s, this));
        EXPECT_TRUE(m_client.connection().registerService(u"com.halvernet.Corvane.Port."_s + port));
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        EXPECT_EQ(message.interface(), u"com.halvernet.Corvane.MessageSendingProtocol"_s);
        EXPECT_EQ(message.member(), u"didReceiveDataFromOtherProcess"_s);
        EXPECT_EQ(message.signature(), u"av"_s);
        QVariantList array;
        message.arguments().constFirst().value<QDBusArgument>() >> array;
        received.push_back(array);
        if (answer == Answer::AtOnce)
            connection.send(message.createReply());
        else if (answer == Answer::WithAnError)
            connection.send(message.createErrorReply(QDBusError::Failed, u"no"_s));
        else if (answer == Answer::ByDying)
            m_client.leave();
        else
            m_unanswered = message;
        return true;
    }
    void answerLate() { m_client.connection().send(m_unanswered.createReply()); }

    /// Waits until that many messages in all have come.
    [[nodiscard]] bool has(std::size_t count) const
    {
        return QTest::qWaitFor([&] { return received.size() >= count; }, Deadline);
    }

    Answer answer = Answer::AtOnce;
    std::vector<QVariantList> received;

private:
    BusClient m_client;
    QDBusMessage m_unanswered;
};

QStringList texts(const QVariantList &array)
{
    return QVariant(array).toStringList();
}

std::vector<QString> numbers(const Peer &peer)
{
    std::vector<QString> seen;
    for (const QVariantList &array : peer.received)
        seen.push_back(array.value(1).toString());
    return seen;
}

qsizetype threadCount()
{
    return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

class MessageSending : public testing::Test
{
protected:
    std::unique_ptr<MessageSendingModule> makeModule(std::chrono::milliseconds callLimit = NeverReached) const
    {
        return std::make_unique<MessageSendingModule>(
            delegate, MessageSendingModule::Settings{.callLimit = callLimit, .busRetryPace = 5ms});
    }
    std::unique_ptr<MessageSendingModule> connected(std::chrono::milliseconds callLimit = NeverReached) const
    {
        auto module = makeModule(callLimit);
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
    Peer peer(bus, u"SyncDMx"_s);
    const auto module = connected();
    module->sendIPCMessage(u"Pause Sync"_s, 502, false);
    module->sendIPCMessage(QString(), 515, false);
    module->sendIPCMessage(QVariantMap{{u"Username"_s, u"Ann"_s}, {u"isTQL"_s, true}}, 506, false);
    ASSERT_TRUE(peer.has(3));
    EXPECT_EQ(texts(peer.received[0]), (QStringList{u"Pause Sync"_s, u"502"_s, u"SyncMDx"_s, u"SyncDMx"_s}));
    EXPECT_EQ(texts(peer.received[1]), (QStringList{QString(), u"515"_s, u"SyncMDx"_s, u"SyncDMx"_s}));
    QVariantMap record;
    peer.received[2].constFirst().value<QDBusArgument>() >> record;
    EXPECT_EQ(record, (QVariantMap{{u"Username"_s, u"Ann"_s}, {u"isTQL"_s, true}}));

    module->sendIPCMessage(u"es"_s, 5001, true);
    ASSERT_TRUE(peer.has(4));
    EXPECT_EQ(texts(peer.received[3]), (QStringList{u"es"_s, u"5001"_s, u"SyncMDx"_s, u"SyncDMx"_s}));
}

TEST_F(MessageSending, HandsArraysOfAnyShapeToTheDelegateOnAnotherThread)
{
    const auto module = connected();
    const std::vector<QVariantList> arrays{{u"line"_s, u"500"_s, u"a"_s, u"b"_s}, {}, {500}};
    for (const QVariantList &array : arrays)
        EXPECT_EQ(callMonitor(array).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(delegate->arrays(), arrays);
    EXPECT_FALSE(delegate->wasOnMainThread());

    module->didReceiveDataFromOtherProcess({u"here"_s});
    EXPECT_EQ(delegate->arrays().back(), QVariantList{u"here"_s});
    delegate.reset();
    EXPECT_EQ(callMonitor({u"to nobody"_s}).type(), QDBusMessage::ReplyMessage);
}

TEST_F(MessageSending, ConnectsAnewAfterACallThatFailed)
{
    const std::tuple<const char *, Peer::Answer, std::chrono::milliseconds> rows[] = {
        {"the peer hangs", Peer::Answer::Never, SoonReached},
        {"the peer dies in the call", Peer::Answer::ByDying, NeverReached},
        {"the peer refuses", Peer::Answer::WithAnError, NeverReached},
    };
    for (const auto &[name, answer, callLimit] : rows) {
        SCOPED_TRACE(name);
        const auto module = connected(callLimit);
        auto peer = std::make_unique<Peer>(bus, u"SyncDMx"_s);
        peer->answer = answer;
        module->sendIPCMessage(u"first"_s, 502, false);
        ASSERT_TRUE(peer->has(1));
        if (answer == Peer::Answer::ByDying)
            peer = std::make_unique<Peer>(bus, u"SyncDMx"_s);
        peer->answer = Peer::Answer::AtOnce;
        peer->received.clear();
        module->sendIPCMessage(u"second"_s, 503, false);
        ASSERT_TRUE(peer->has(1));
        EXPECT_EQ(numbers(*peer), std::vector<QString>{u"503"_s}) << "the first is not sent again";
    }
}

TEST_F(MessageSending, TakesAnAnswerThatComesTooLateForNothing)
{
    Peer peer(bus, u"SyncDMx"_s);
    peer.answer = Peer::Answer::Never;
    const auto module = connected(SoonReached);
    module->sendIPCMessage(u"slow"_s, 502, false);
    module->sendIPCMessage(u"next"_s, 503, false); // goes when the limit of the first is over
    ASSERT_TRUE(peer.has(2));
    peer.answerLate();
    peer.answer = Peer::Answer::AtOnce;
    module->sendIPCMessage(u"after"_s, 508, false);
    ASSERT_TRUE(peer.has(3));
    EXPECT_EQ(numbers(peer), (std::vector<QString>{u"502"_s, u"503"_s, u"508"_s}));
}

TEST_F(MessageSending, DoesNotWaitForAPeerThatHangs)
{
    Peer peer(bus, u"SyncDMx"_s);
    peer.answer = Peer::Answer::Never;
    auto module = connected(NeverReached);
    QElapsedTimer timer;
    timer.start();
    module->sendIPCMessage(u"hangs"_s, 502, false);
    for (int i = 0; i < 5000; ++i)
        module->sendIPCMessage(u"waits or is lost"_s, 503, false);
    ASSERT_TRUE(peer.has(1));
    const qsizetype threadsBefore = threadCount();
    module.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return threadCount() <= threadsBefore - 2; }, Deadline / 2))
        << "the call is given up, and both threads end";
    EXPECT_LT(timer.elapsed(), Deadline);
    EXPECT_EQ(peer.received.size(), 1U);
}

TEST_F(MessageSending, StartsNoThreadBeforeItIsSetUp)
{
    const qsizetype before = threadCount();
    const auto module = makeModule();
    module->sendIPCMessage(u"nowhere"_s, 502, false);
    module->sendIPCMessage(u"nowhere"_s, 502, true);
    EXPECT_EQ(threadCount(), before);
}

TEST_F(MessageSending, ClosesThePortOnTerminationOnlyWhileDataIsReceived)
{
    const auto module = connected();
    const auto reachable = [this] { return callMonitor({}).type() == QDBusMessage::ReplyMessage; };
    EXPECT_TRUE(module->applicationShouldTerminate());
    module->closeIPCConnection();
    EXPECT_TRUE(reachable());
    module->setCurrentlyReceivingData();
    module->resetCurrentlyReceivingData();
    EXPECT_TRUE(module->applicationShouldTerminate());
    EXPECT_TRUE(reachable());
    module->setCurrentlyReceivingData();
    EXPECT_FALSE(module->applicationShouldTerminate());
    EXPECT_FALSE(reachable());

    // Another takes the same names; its port goes by the name alone.
    const auto delegateOfNext = std::make_shared<Recorder>();
    MessageSendingModule next(delegateOfNext, {.callLimit = NeverReached, .busRetryPace = 5ms});
    next.setupConnection(u"SyncMDx"_s, u"SyncDMx"_s);
    EXPECT_TRUE(reachable());
    EXPECT_EQ(delegateOfNext->arrays().size(), 1U);
    MessageSendingModule::closeConnection(u"SyncMDx"_s);
    EXPECT_FALSE(reachable());
}

TEST_F(MessageSending, OutlivesTheBusAndGoesOnWhenItComesBack)
{
    std::signal(SIGPIPE, SIG_DFL);
    const auto module = connected();
    auto peer = std::make_unique<Peer>(bus, u"SyncDMx"_s);
    module->sendIPCMessage(u"before"_s, 502, false);
    ASSERT_TRUE(peer->has(1));
    bus.stop();
    module->sendIPCMessage(u"lost"_s, 503, false);
    peer.reset();
    bus.start();
    ASSERT_TRUE(waitUntil([&] { return callMonitor({}).type() == QDBusMessage::ReplyMessage; }));
    Peer later(bus, u"SyncDMx"_s);
    module->sendIPCMessage(u"after"_s, 508, false);
    ASSERT_TRUE(later.has(1));
    EXPECT_EQ(numbers(later).back(), u"508"_s);
    EXPECT_EQ(std::signal(SIGPIPE, SIG_IGN), SIG_IGN) << "a broken pipe must not end the process";
}

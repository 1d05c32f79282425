#include "Platform/SessionBus/NamedPort.h"
#include "Platform/MainThread.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QTest>

#include <gtest/gtest.h>

#include <mutex>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Deadline = 30'000; // milliseconds; only a failing test waits so long
const NamedPort::Settings QuickRetry{.retryPace = std::chrono::milliseconds(5), .user = getuid()};

QDBusMessage call(const BusClient &client, const QString &port, const QVariantList &arguments,
                  const QString &member = u"didReceiveDataFromOtherProcess"_s,
                  const QString &interface = u"com.halvernet.Corvane.MessageSendingProtocol"_s)
{
    auto message =
        QDBusMessage::createMethodCall(u"com.halvernet.Corvane.Port."_s + port, u"/port"_s, interface, member);
    message.setArguments(arguments);
    return client.connection().call(message, QDBus::Block, Deadline);
}

/// The call as peers make it, with one array.
QDBusMessage hand(const BusClient &client, const QString &port, const QVariantList &array)
{
    QVariantList arguments;
    arguments.append(QVariant(array)); // in braces, a list would be copied and not put into another
    return call(client, port, arguments);
}

/// A list as the one element of another.
QVariantList listOf(const QVariantList &element)
{
    QVariantList list;
    list.append(QVariant(element));
    return list;
}

/// The last array that arrived.
class Inbox
{
public:
    NamedPort::Handler handler()
    {
        return [this](const QVariantList &message) {
            const std::lock_guard lock(m_mutex);
            m_last = message;
            m_onMainThread = isMainThread();
            ++m_count;
        };
    }
    QVariantList last() const
    {
        const std::lock_guard lock(m_mutex);
        return m_last;
    }
    int count() const
    {
        const std::lock_guard lock(m_mutex);
        return m_count;
    }
    bool wasOnMainThread() const
    {
        const std::lock_guard lock(m_mutex);
        return m_onMainThread;
    }

private:
    mutable std::mutex m_mutex;
    QVariantList m_last;
    bool m_onMainThread = true;
    int m_count = 0;
};

class NamedPorts : public testing::Test
{
protected:
    TemporaryHome home;
    PrivateBus bus{home.path(QString())};
    BusClient client{bus};
    Inbox inbox;
};
} // namespace

TEST_F(NamedPorts, HandOverArraysOfEveryShape)
{
    const auto port = NamedPort::open(u"SyncMD"_s, inbox.handler(), QuickRetry);
    ASSERT_TRUE(port);
    QVariantList tenThousand;
    for (int i = 0; i < 10'000; ++i)
        tenThousand.append(QString::number(i));
    const QString mebibyte(1024 * 1024, u'x');
    const struct {
        const char *name;
        QVariantList sent;
        QVariantList received;
    } rows[] = {
        {"four texts", {u"line"_s, u"500"_s, u"a"_s, u"b"_s}, {u"line"_s, u"500"_s, u"a"_s, u"b"_s}},
        {"nothing", {}, {}},
        {"numbers for texts", {500, 1.5, true, qlonglong(-1)}, {500, 1.5, true, qlonglong(-1)}},
        {"a dictionary in a dictionary",
         {u"x"_s, QVariantMap{{u"a"_s, QVariantMap{{u"b"_s, QVariantList{1, u"c"_s}}}}}},
         {u"x"_s, QVariantMap{{u"a"_s, QVariantMap{{u"b"_s, QVariantList{1, u"c"_s}}}}}}},
        {"texts become a list like any other", {QStringList{u"ls"_s, u"-l"_s}}, listOf({u"ls"_s, u"-l"_s})},
        {"nested arrays", listOf(listOf(listOf({}))), listOf(listOf(listOf({})))},
        {"a type without a plain form keeps its place",
         {QVariant::fromValue(QDBusObjectPath(u"/x"_s)), u"after"_s},
         {QVariant(), u"after"_s}},
        {"10,000 elements", tenThousand, tenThousand},
        {"a text of 1 MiB", {mebibyte}, {mebibyte}},
        {"half a surrogate pair", {QString(QChar(0xd83d))}, {u"?"_s}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const QDBusMessage reply = hand(client, u"SyncMD"_s, row.sent);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        EXPECT_EQ(inbox.last(), row.received);
    }
    EXPECT_FALSE(inbox.wasOnMainThread());
}

TEST_F(NamedPorts, RefuseWhatIsNoMessage)
{
    const auto port = NamedPort::open(u"SyncMD"_s, inbox.handler(), QuickRetry);
    ASSERT_TRUE(port);
    QVariantList tooMany;
    tooMany.fill(QString(), 100'001);
    const struct {
        const char *name;
        QDBusMessage reply;
        QString error;
    } rows[] = {
        {"no argument", call(client, u"SyncMD"_s, {}), u"org.freedesktop.DBus.Error.InvalidArgs"_s},
        {"a text", call(client, u"SyncMD"_s, {u"x"_s}), u"org.freedesktop.DBus.Error.InvalidArgs"_s},
        {"an array of texts", call(client, u"SyncMD"_s, {QStringList{u"x"_s}}),
         u"org.freedesktop.DBus.Error.InvalidArgs"_s},
        {"two arrays", call(client, u"SyncMD"_s, {QVariantList{}, QVariantList{}}),
         u"org.freedesktop.DBus.Error.InvalidArgs"_s},
        {"more than anybody sends", hand(client, u"SyncMD"_s, tooMany),
         u"org.freedesktop.DBus.Error.LimitsExceeded"_s},
        {"another method", call(client, u"SyncMD"_s, listOf({}), u"quit"_s),
         u"org.freedesktop.DBus.Error.UnknownInterface"_s},
        {"another interface",
         call(client, u"SyncMD"_s, listOf({}), u"didReceiveDataFromOtherProcess"_s, u"org.example.Other"_s),
         u"org.freedesktop.DBus.Error.UnknownInterface"_s},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.reply.errorName(), row.error);
    }
    EXPECT_EQ(inbox.count(), 0);
}

TEST_F(NamedPorts, RefuseACallerOfAnotherUser)
{
    const auto port = NamedPort::open(u"SyncMD"_s, inbox.handler(),
                                      {.retryPace = QuickRetry.retryPace, .user = getuid() + 1});
    ASSERT_TRUE(port);
    for (const char *attempt : {"first", "again"}) {
        SCOPED_TRACE(attempt);
        EXPECT_EQ(hand(client, u"SyncMD"_s, {u"x"_s}).errorName(),
                  u"org.freedesktop.DBus.Error.AccessDenied"_s);
    }
    EXPECT_EQ(inbox.count(), 0);
}

TEST_F(NamedPorts, AreFoundByTheirNameWhileTheyAreOpen)
{
    EXPECT_FALSE(NamedPort::open(QString(), inbox.handler(), QuickRetry));
    ASSERT_TRUE(client.connection().registerService(u"com.halvernet.Corvane.Port.taken"_s));
    EXPECT_FALSE(NamedPort::open(u"taken"_s, inbox.handler(), QuickRetry)) << "another process has it";

    auto port = NamedPort::open(u"a b"_s, inbox.handler(), QuickRetry);
    ASSERT_TRUE(port);
    EXPECT_TRUE(port->isReachable());
    EXPECT_EQ(hand(client, u"a_20b"_s, {u"x"_s}).type(), QDBusMessage::ReplyMessage);

    NamedPort::closeAll(u"a c"_s);
    EXPECT_TRUE(port->isReachable()) << "that was another name";
    NamedPort::closeAll(u"a b"_s);
    EXPECT_FALSE(port->isReachable());
    const auto next = NamedPort::open(u"a b"_s, inbox.handler(), QuickRetry);
    ASSERT_TRUE(next) << "the name is free at once";
    port.reset(); // the old handle leaves the new port alone
    EXPECT_EQ(hand(client, u"a_20b"_s, {u"x"_s}).type(), QDBusMessage::ReplyMessage);
}

TEST_F(NamedPorts, MayBeClosedByTheirOwnHandler)
{
    std::unique_ptr<NamedPort> port;
    int calls = 0;
    port = NamedPort::open(
        u"SyncMD"_s,
        [&](const QVariantList &) {
            ++calls;
            port.reset();
        },
        QuickRetry);
    ASSERT_TRUE(port);
    (void)hand(client, u"SyncMD"_s, {}); // the name goes during the call, so any answer will do
    EXPECT_EQ(hand(client, u"SyncMD"_s, {}).errorName(), u"org.freedesktop.DBus.Error.ServiceUnknown"_s);
    EXPECT_EQ(calls, 1);
}

TEST_F(NamedPorts, ComeBackWithALostBus)
{
    const auto port = NamedPort::open(u"SyncMD"_s, inbox.handler(), QuickRetry);
    ASSERT_TRUE(port);
    ASSERT_EQ(hand(client, u"SyncMD"_s, {1}).type(), QDBusMessage::ReplyMessage);
    bus.stop();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !port->isReachable(); }, Deadline));
    bus.start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return port->isReachable(); }, Deadline));
    const BusClient later(bus);
    EXPECT_EQ(hand(later, u"SyncMD"_s, {2}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(inbox.last(), QVariantList{2});
}

TEST(NamedPortsWithoutABus, OpenWhenOneComes)
{
    const TemporaryHome home;
    PrivateBus bus(home.path(QString()), PrivateBus::Begin::Stopped);
    Inbox inbox;
    const auto port = NamedPort::open(u"SyncMD"_s, inbox.handler(), QuickRetry);
    ASSERT_TRUE(port);
    EXPECT_FALSE(port->isReachable());
    bus.start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return port->isReachable(); }, Deadline));
    const BusClient client(bus);
    EXPECT_EQ(hand(client, u"SyncMD"_s, {u"x"_s}).type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(inbox.count(), 1);
}

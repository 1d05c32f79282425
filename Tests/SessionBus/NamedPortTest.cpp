#include "Platform/SessionBus/NamedPort.h"
#include "Tests/Support/Inbox.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDBusMessage>
#include <QDBusObjectPath>

#include <gtest/gtest.h>

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

class NamedPorts : public testing::Test
{
protected:
    TemporaryHome home;
    PrivateBus bus{home.path(QString())};
    BusClient client{bus};
    Inbox inbox;
    const NamedPort::Handler handler = [this](const QVariantList &message) { inbox.add(message); };
};
} // namespace

TEST_F(NamedPorts, HandOverArraysOfEveryShape)
{
    const auto port = NamedPort::open(u"SyncMD"_s, handler, QuickRetry);
    ASSERT_TRUE(port);
    const QString mebibyte(1024 * 1024, u'x');
    const std::tuple<const char *, QVariantList, QVariantList> rows[] = {
        {"four texts", {u"line"_s, u"500"_s, u"a"_s, u"b"_s}, {u"line"_s, u"500"_s, u"a"_s, u"b"_s}},
        {"numbers for texts", {500, 1.5, true, qlonglong(-1)}, {500, 1.5, true, qlonglong(-1)}},
        {"a dictionary in a dictionary",
         {u"x"_s, QVariantMap{{u"a"_s, QVariantMap{{u"b"_s, QVariantList{1, u"c"_s}}}}}},
         {u"x"_s, QVariantMap{{u"a"_s, QVariantMap{{u"b"_s, QVariantList{1, u"c"_s}}}}}}},
        {"texts become a list like any other", {QStringList{u"ls"_s, u"-l"_s}}, listOf({u"ls"_s, u"-l"_s})},
        {"a type without a plain form keeps its place",
         {QVariant::fromValue(QDBusObjectPath(u"/x"_s)), u"after"_s},
         {QVariant(), u"after"_s}},
        {"a text of 1 MiB", {mebibyte}, {mebibyte}},
        {"half a surrogate pair", {QString(QChar(0xd83d))}, {u"?"_s}},
    };
    for (const auto &[name, sent, received] : rows) {
        SCOPED_TRACE(name);
        const QDBusMessage reply = hand(client, u"SyncMD"_s, sent);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        EXPECT_EQ(inbox.arrays().back(), received);
    }
    EXPECT_FALSE(inbox.wasOnMainThread());
}

TEST_F(NamedPorts, RefuseWhatIsNoMessage)
{
    const auto port = NamedPort::open(u"SyncMD"_s, handler, QuickRetry);
    ASSERT_TRUE(port);
    QVariantList tooMany;
    tooMany.fill(QString(), 100'001);
    const std::tuple<const char *, QDBusMessage, QString> rows[] = {
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
    for (const auto &[name, reply, error] : rows)
        EXPECT_EQ(reply.errorName(), error) << name;
    EXPECT_EQ(inbox.arrays().size(), 0U);
}

TEST_F(NamedPorts, RefuseACallerOfAnotherUser)
{
    const auto port =
        NamedPort::open(u"SyncMD"_s, handler, {.retryPace = QuickRetry.retryPace, .user = getuid() + 1});
    ASSERT_TRUE(port);
    for (int attempt = 1; attempt <= 2; ++attempt)
        EXPECT_EQ(hand(client, u"SyncMD"_s, {u"x"_s}).errorName(),
                  u"org.freedesktop.DBus.Error.AccessDenied"_s);
    EXPECT_TRUE(inbox.arrays().empty());
}

TEST_F(NamedPorts, AreFoundByTheirNameWhileTheyAreOpen)
{
    EXPECT_FALSE(NamedPort::open(QString(), handler, QuickRetry));
    ASSERT_TRUE(client.connection().registerService(u"com.halvernet.Corvane.Port.taken"_s));
    EXPECT_FALSE(NamedPort::open(u"taken"_s, handler, QuickRetry)) << "another process has it";

    auto port = NamedPort::open(u"a b"_s, handler, QuickRetry);
    ASSERT_TRUE(port);
    EXPECT_TRUE(port->isReachable());
    EXPECT_EQ(hand(client, u"a_20b"_s, {u"x"_s}).type(), QDBusMessage::ReplyMessage);

    NamedPort::closeAll(u"a c"_s);
    EXPECT_TRUE(port->isReachable()) << "that was another name";
    NamedPort::closeAll(u"a b"_s);
    EXPECT_FALSE(port->isReachable());
    const auto next = NamedPort::open(u"a b"_s, handler, QuickRetry);
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

TEST_F(NamedPorts, OpenWhenABusComesAndComeBackWithALostOne)
{
    bus.stop();
    const auto port = NamedPort::open(u"SyncMD"_s, handler, QuickRetry);
    ASSERT_TRUE(port);
    for (int round = 0; round < 2; ++round) {
        EXPECT_FALSE(port->isReachable());
        bus.start();
        ASSERT_TRUE(waitUntil([&] { return port->isReachable(); }));
        EXPECT_EQ(hand(BusClient(bus), u"SyncMD"_s, {round}).type(), QDBusMessage::ReplyMessage);
        EXPECT_EQ(inbox.arrays().back(), QVariantList{round});
        bus.stop();
        ASSERT_TRUE(waitUntil([&] { return !port->isReachable(); }));
    }
}

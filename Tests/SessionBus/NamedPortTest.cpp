#include "Platform/SessionBus/NamedPort.h"
#include "Tests/Support/Inbox.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDBusMessage>
#include <QDBusObjectPath>

#include <mutex>
#include <thread>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int Deadline = 30'000; // milliseconds; only a failing test waits so long
const NamedPort::Settings QuickRetry{.retryPace = std::chrono::milliseconds(5), .user = getuid()};

/// A list as the one element of another; in braces it would be copied.
QVariantList listOf(const QVariantList &element)
{
    QVariantList list;
    list.append(QVariant(element));
    return list;
}

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
    return call(client, port, listOf(array));
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
    const QVariantMap deep{{u"a"_s, QVariantMap{{u"b"_s, QVariantList{1, u"c"_s}}}}};
    const std::tuple<const char *, QVariantList, QVariantList> rows[] = {
        {"nothing", {}, {}},
        {"other types than texts",
         {500, 1.5, true, qlonglong(-1), deep},
         {500, 1.5, true, qlonglong(-1), deep}},
        {"texts become a list like any other", {QStringList{u"ls"_s, u"-l"_s}}, listOf({u"ls"_s, u"-l"_s})},
        {"a type without a plain form", {QVariant::fromValue(QDBusObjectPath(u"/x"_s)), 1}, {QVariant(), 1}},
        {"a text of 1 MiB", {QString(1 << 20, u'x')}, {QString(65536, u'x')}},
        {"half a surrogate pair", {QString(QChar(0xd83d))}, {u"?"_s}},
    };
    for (const auto &[name, sent, received] : rows) {
        const QDBusMessage reply = hand(client, u"SyncMD"_s, sent);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << name << reply.errorMessage().toStdString();
        EXPECT_EQ(inbox.arrays().back(), received) << name;
    }
    EXPECT_FALSE(inbox.wasOnMainThread());
}

TEST_F(NamedPorts, RefuseWhatIsNoMessage)
{
    const auto port = NamedPort::open(u"SyncMD"_s, handler, QuickRetry);
    ASSERT_TRUE(port);
    const QString name = u"SyncMD"_s, method = u"didReceiveDataFromOtherProcess"_s;
    const std::tuple<const char *, QDBusMessage, const char16_t *> rows[] = {
        {"no argument", call(client, name, {}), u"InvalidArgs"},
        {"a text", call(client, name, {u"x"_s}), u"InvalidArgs"},
        {"an array of texts", call(client, name, {QStringList{u"x"_s}}), u"InvalidArgs"},
        {"two arrays", call(client, name, {QVariantList{}, QVariantList{}}), u"InvalidArgs"},
        {"more than anybody sends", hand(client, name, QVariantList(100'001, QString())), u"LimitsExceeded"},
        {"another method", call(client, name, listOf({}), u"quit"_s), u"UnknownInterface"},
        {"another interface", call(client, name, listOf({}), method, u"org.example.O"_s), u"UnknownInterface"},
    };
    for (const auto &[label, reply, error] : rows)
        EXPECT_EQ(reply.errorName(), u"org.freedesktop.DBus.Error."_s + QString::fromUtf16(error)) << label;
    EXPECT_TRUE(inbox.arrays().empty());
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
    auto port = NamedPort::open(u"a b"_s, handler, QuickRetry);
    ASSERT_TRUE(port);
    NamedPort::closeAll(u"a c"_s);
    EXPECT_TRUE(port->isReachable()) << "that was another name";
    NamedPort::closeAll(u"a b"_s);
    EXPECT_FALSE(port->isReachable());
    const auto next = NamedPort::open(u"a b"_s, handler, QuickRetry);
    ASSERT_TRUE(next) << "the name is free at once";
    port.reset(); // the old handle leaves the new port alone
    EXPECT_EQ(hand(client, u"a_20b"_s, {u"x"_s}).type(), QDBusMessage::ReplyMessage);
}

TEST_F(NamedPorts, TryAgainWhereTheNameIsTaken)
{
    const QString name = u"com.halvernet.Corvane.Port.taken"_s;
    ASSERT_TRUE(client.connection().registerService(name));
    std::mutex mutex;
    QStringList reasons;
    NamedPort::Settings settings = QuickRetry;
    settings.trace = [&](const QString &reason) {
        const std::lock_guard lock(mutex);
        reasons.append(reason);
    };
    const auto port = NamedPort::open(u"taken"_s, handler, settings);
    ASSERT_TRUE(port);
    std::this_thread::sleep_for(std::chrono::milliseconds(100)); // some twenty attempts
    EXPECT_FALSE(port->isReachable());
    ASSERT_TRUE(client.connection().unregisterService(name));
    EXPECT_TRUE(waitUntil([&] { return port->isReachable(); }));
    const std::lock_guard lock(mutex);
    EXPECT_EQ(reasons, QStringList{u"another process has the name"_s}) << "traced once";
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
    std::ignore = hand(client, u"SyncMD"_s, {}); // the name goes during the call, so any answer will do
    EXPECT_EQ(hand(client, u"SyncMD"_s, {}).errorName(), u"org.freedesktop.DBus.Error.ServiceUnknown"_s);
    EXPECT_EQ(calls, 1);
}

TEST_F(NamedPorts, OpenWhenABusComesAndComeBackWithALostOne)
{
    bus.stop();
    const auto port = NamedPort::open(u"SyncMD"_s, handler, QuickRetry);
    ASSERT_TRUE(port);
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(waitUntil([&] { return !port->isReachable(); }));
        bus.start();
        ASSERT_TRUE(waitUntil([&] { return port->isReachable(); }));
        EXPECT_EQ(hand(BusClient(bus), u"SyncMD"_s, {round}).type(), QDBusMessage::ReplyMessage);
        EXPECT_EQ(inbox.arrays().back(), QVariantList{round});
        bus.stop();
    }
}

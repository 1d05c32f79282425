#include "Platform/SessionBus/DistributedNotificationCenter.h"
#include "Platform/BusAddress.h"
#include "Platform/MainThread.h"
#include "Tests/Support/PrintQt.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryHome.h"
#include "Tests/WaitUntil.h"

#include <QDBusVariant>

#include <gtest/gtest.h>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
constexpr std::chrono::milliseconds QuickRetry{5};

/// An observation that keeps what it hears.
class Listener
{
public:
    Listener(DistributedNotificationCenter &center, const QString &name)
        : m_observation(center.observe(name, [this](const QString &object, const QVariantMap &userInfo) {
              onMainThread = onMainThread && isMainThread();
              heard.emplace_back(object, userInfo);
          }))
    {
    }
    void stop() { m_observation.reset(); }

    std::vector<std::pair<QString, QVariantMap>> heard; // object and user info
    bool onMainThread = true;

private:
    DistributedNotificationCenter::Observation m_observation;
};

class DistributedNotifications : public testing::Test
{
protected:
    /// Another program's post, as it stands on the bus.
    static void postFrom(const BusClient &client, const QVariantList &arguments)
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(u"/com/halvernet/Corvane/DistributedNotifications"_s,
                                       u"com.halvernet.Corvane.DistributedNotifications"_s, u"Posted"_s);
        signal.setArguments(arguments);
        ASSERT_TRUE(client.connection().send(signal));
    }

    /// Returns when the bus has the observations made so far, and what others posted before has been heard.
    void settle()
    {
        Listener last(center, u"settled"_s);
        center.post(u"settled"_s);
        ASSERT_TRUE(waitUntil([&] { return !last.heard.empty(); }));
    }

    TemporaryHome home;
    PrivateBus bus{home.path(QString())};
    DistributedNotificationCenter center{QuickRetry};
};
} // namespace

TEST_F(DistributedNotifications, CarryEachKindOfValueToAnotherProgramFromAnyThread)
{
    DistributedNotificationCenter other(QuickRetry);
    const QVariantMap userInfo{
        {u"text"_s, u"日本語 \"x\""_s},
        {u"truth"_s, true},
        {u"number"_s, -5},
        {u"texts"_s, QStringList{u"a"_s, QString()}},
        {u"inner"_s, QVariantMap{{u"deep"_s, QVariantMap{{u"n"_s, 1}}}, {u"texts"_s, QStringList{u"b"_s}}}}};
    Listener listener(center, u"changeLanguage"_s);
    settle();
    std::thread([&] { other.post(u"changeLanguage"_s, u"from"_s, userInfo); }).join();
    ASSERT_TRUE(waitUntil([&] { return !listener.heard.empty(); }));
    EXPECT_EQ(listener.heard.front(), std::pair(u"from"_s, userInfo));
    EXPECT_TRUE(listener.onMainThread);
}

TEST_F(DistributedNotifications, DropWhatNoNotificationHolds)
{
    const BusClient client(bus);
    Listener listener(center, u"moveStarted"_s);
    settle();
    postFrom(client, {u"moveStarted"_s, QString()});                           // no details
    postFrom(client, {u"moveStarted"_s, 7, QVariantMap()});                    // an object that is no text
    postFrom(client, {u"moveStarted"_s, QString(), QVariantMap(), u"more"_s}); // one argument too many
    postFrom(client, {u"moveStarting"_s, QString(), QVariantMap()});           // another name
    postFrom(client, {u"moveStarted"_s, QString(),
                      QVariantMap{{u"fraction"_s, 1.5},
                                  {u"wrapped"_s, QVariant::fromValue(QDBusVariant(u"inside"_s))},
                                  {u"whole"_s, 4}}});
    ASSERT_TRUE(waitUntil([&] { return !listener.heard.empty(); }));
    settle();
    ASSERT_EQ(listener.heard.size(), 1U);
    EXPECT_EQ(listener.heard.front().second, (QVariantMap{{u"whole"_s, 4}, {u"wrapped"_s, u"inside"_s}}));
}

TEST_F(DistributedNotifications, ReachEachObserverOnceUntilItsObservationEnds)
{
    Listener first(center, u"EnableDisableSync"_s);
    Listener second(center, u"EnableDisableSync"_s);
    center.post(u"EnableDisableSync"_s);
    settle();
    first.stop();
    center.post(u"EnableDisableSync"_s);
    settle();
    EXPECT_EQ(first.heard.size(), 1U);
    EXPECT_EQ(second.heard.size(), 2U);
}

TEST_F(DistributedNotifications, MayEndTheCentreFromAHandler)
{
    auto doomed = std::make_unique<DistributedNotificationCenter>(QuickRetry);
    int calls = 0;
    const auto ends = doomed->observe(u"end"_s, [&](const QString &, const QVariantMap &) {
        ++calls;
        doomed.reset();
    });
    auto later = doomed->observe(u"end"_s, [&](const QString &, const QVariantMap &) { ++calls; });
    doomed->post(u"end"_s);
    ASSERT_TRUE(waitUntil([&] { return calls > 0; }));
    settle();
    EXPECT_EQ(calls, 1);
    later.reset(); // harmless once the centre has gone
}

TEST_F(DistributedNotifications, AreHeardWhenALateOrALostBusComes)
{
    bus.stop();
    DistributedNotificationCenter begunWithoutABus(QuickRetry);
    Listener alsoThere(begunWithoutABus, u"ReloadPreferences"_s);
    Listener listener(center, u"ReloadPreferences"_s);
    ASSERT_TRUE(waitUntil([&] { return !center.isConnected(); }));
    EXPECT_FALSE(begunWithoutABus.isConnected());
    center.post(u"ReloadPreferences"_s); // goes nowhere

    bus.start();
    ASSERT_TRUE(waitUntil([&] { return center.isConnected() && begunWithoutABus.isConnected(); }));
    settle();
    const BusClient client(bus);
    postFrom(client, {u"ReloadPreferences"_s, u"after"_s, QVariantMap()});
    ASSERT_TRUE(waitUntil([&] { return !listener.heard.empty() && !alsoThere.heard.empty(); }));
    EXPECT_EQ(listener.heard.front().first, u"after"_s);
    EXPECT_EQ(alsoThere.heard.front().first, u"after"_s);
}

TEST(SessionBusAddress, IsTheGivenOneOrTheSocketOfTheRuntimeFolder)
{
    const TemporaryHome home;
    const QByteArray addressBefore = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    const QByteArray folderBefore = qgetenv("XDG_RUNTIME_DIR");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(BusAddress::current(), std::nullopt);
    qputenv("XDG_RUNTIME_DIR", home.path(QString()).toUtf8());
    EXPECT_EQ(BusAddress::current(), std::nullopt) << "no socket in the runtime folder";
    home.write(u"bus"_s, {});
    EXPECT_EQ(BusAddress::current(), QString(u"unix:path="_s + home.path(QString()) + u"/bus"_s));
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/given");
    EXPECT_EQ(BusAddress::current(), u"unix:path=/given"_s);
    addressBefore.isNull() ? qunsetenv("DBUS_SESSION_BUS_ADDRESS")
                           : qputenv("DBUS_SESSION_BUS_ADDRESS", addressBefore);
    folderBefore.isNull() ? qunsetenv("XDG_RUNTIME_DIR") : qputenv("XDG_RUNTIME_DIR", folderBefore);
}

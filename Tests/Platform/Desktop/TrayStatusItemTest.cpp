#include "Platform/Desktop/TrayStatusItem.h"
#include "Platform/Desktop/ApplicationService.h"
#include "Platform/Desktop/RunningInstance.h"
#include "Tests/Support/PrivateBus.h"
#include "Tests/Support/TemporaryHome.h"

#include <QDBusConnectionInterface>
#include <QTest>

#include <gtest/gtest.h>

#include <future>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Host = PanelWatch::Host;
using RunningInstance::Outcome;
using TrayRules::Step;

namespace
{
const QString Identifier = u"com.example.Monitor"_s;
}

TEST(TrayRules, AnItemIsMadeOnceAndMovesToWhatStands)
{
    const struct {
        Host made, standing;
        bool mayHaveWatcher;
        Step step;
    } rows[] = {
        {Host::None, Host::None, false, Step::Rest},
        {Host::None, Host::Embedding, true, Step::Make},
        {Host::None, Host::Notifier, true, Step::Make},
        {Host::None, Host::Unknown, true, Step::Rest},
        {Host::Embedding, Host::None, false, Step::Rest},
        {Host::Embedding, Host::Embedding, false, Step::Rest},
        {Host::Embedding, Host::Notifier, true, Step::MoveOver},
        {Host::Embedding, Host::Unknown, true, Step::Rest},
        {Host::Notifier, Host::None, false, Step::Rest},
        {Host::Notifier, Host::Embedding, true, Step::Rest},
        {Host::Notifier, Host::Embedding, false, Step::MoveOver},
        {Host::Notifier, Host::Notifier, true, Step::Rest},
    };
    for (const auto &row : rows)
        EXPECT_EQ(TrayRules::nextStep(row.made, row.standing, row.mayHaveWatcher), row.step)
            << int(row.made) << " made, " << int(row.standing) << " stands, watcher " << row.mayHaveWatcher;
}

namespace
{
/// Takes status items as far as anybody can see who asks for them.
class WatcherDouble : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered MEMBER hasHost)

public:
    bool hasHost = false;

    void appearOn(QDBusConnection bus)
    {
        ASSERT_TRUE(
            bus.registerObject(u"/StatusNotifierWatcher"_s, this,
                               QDBusConnection::ExportAllProperties | QDBusConnection::ExportAllSignals));
        ASSERT_TRUE(bus.registerService(u"org.kde.StatusNotifierWatcher"_s));
    }

Q_SIGNALS:
    void StatusNotifierHostRegistered();
};
} // namespace

TEST(PanelWatch, HearsOfAHostThatComesAndGoes)
{
    const TemporaryHome home;
    const PrivateBus bus(home.path(QString()));
    BusLink link;
    link.start();
    PanelWatch panels(link);
    const Host without = panels.host(); // whatever windows the platform of the tests takes
    EXPECT_NE(without, Host::Notifier);
    {
        BusClient panel(bus);
        WatcherDouble watcher;
        watcher.appearOn(panel.connection());
        QTest::qWait(50);
        EXPECT_EQ(panels.host(), without) << "the watcher has no host yet";
        int changes = 0;
        QObject::connect(&panels, &PanelWatch::changed, &watcher, [&] { ++changes; });
        watcher.hasHost = true;
        Q_EMIT watcher.StatusNotifierHostRegistered();
        EXPECT_TRUE(QTest::qWaitFor([&] { return changes > 0; }));
        EXPECT_EQ(panels.host(), Host::Notifier);
        panel.leave();
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return panels.host() == without; }));
}

TEST(TrayStatusItem, TellsOfEveryPanelThatTakesItAfterTheFirst)
{
    const TemporaryHome home;
    const PrivateBus bus(home.path(QString()));
    BusLink link;
    link.start();
    PanelWatch panels(link);
    TrayStatusItem item(home.path(QString()), panels);
    int taken = 0;
    int moved = 0;
    int changes = 0; // the double answers on this thread, so nothing here may ask before an answer has come
    item.setTaken([&] { ++taken; });
    item.setMoved([&] { ++moved; });
    QObject::connect(&panels, &PanelWatch::changed, &panels, [&] { ++changes; });
    const auto waitForChange = [&] {
        EXPECT_TRUE(QTest::qWaitFor([&, before = changes] { return changes > before; }));
    };
    waitForChange(); // the answer that there is no panel yet
    for (const int panelsBefore : {0, 1, 2}) {
        BusClient panel(bus);
        WatcherDouble watcher;
        watcher.hasHost = true;
        watcher.appearOn(panel.connection());
        waitForChange();
        if (panelsBefore == 0)
            item.show();
        EXPECT_EQ(taken, 1);
        EXPECT_EQ(moved, panelsBefore);
        panel.leave();
        waitForChange();
        EXPECT_EQ(moved, panelsBefore) << "a panel that goes takes nothing";
    }
}

TEST(TrayStatusItem, NoneIsMadeWhileTheWatcherIsSilent)
{
    const TemporaryHome home;
    PrivateBus bus(home.path(QString()));
    const BusClient panel(bus);
    WatcherDouble watcher;
    watcher.hasHost = true;
    watcher.appearOn(panel.connection());
    BusLink link(5ms);
    link.start();
    PanelWatch panels(link);
    TrayStatusItem item(home.path(QString()), panels);
    item.show(); // which waits on this thread, so that the double can't answer
    EXPECT_FALSE(item.isInPanel()) << "no answer is not the answer that there is no host";
    EXPECT_EQ(panels.host(), Host::Unknown);
    EXPECT_TRUE(QTest::qWaitFor([&] { return item.isInPanel(); })) << "it is asked again";
    EXPECT_EQ(panels.host(), Host::Notifier);

    int moved = 0;
    item.setMoved([&] { ++moved; });
    QObject::connect(&link, &BusLink::connected, &panels, [&] {
        item.renew();
        EXPECT_EQ(panels.host(), Host::Unknown) << "it waits on this thread";
        EXPECT_EQ(moved, 0) << "made anew before there was an answer";
    });
    bus.stop();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !link.connection(); }));
    bus.start();
    const BusClient panelAgain(bus);
    watcher.appearOn(panelAgain.connection());
    EXPECT_TRUE(QTest::qWaitFor([&] { return moved == 1; }));
}

TEST(RunningInstance, AnswersEndsOrIsSilent)
{
    const TemporaryHome home;
    const PrivateBus bus(home.path(QString()));
    const QString lock = home.path(u"lock"_s);
    const auto ask = [&](std::chrono::milliseconds limit) {
        SingleInstance second(lock);
        return RunningInstance::ask(Identifier, second, std::chrono::steady_clock::now() + limit);
    };
    auto first = std::make_unique<SingleInstance>(lock);
    ASSERT_EQ(first->claim(0ms), SingleInstance::Answer::Only);
    EXPECT_EQ(ask(300ms), Outcome::Silent) << "nobody has the name";

    BusLink link;
    link.start();
    int activations = 0;
    ApplicationService service(
        Identifier, [&] { ++activations; }, link);
    service.start();
    EXPECT_EQ(ask(300ms), Outcome::Silent) << "its loop does not turn";

    auto answer = std::async(std::launch::async, [&] { return ask(30s); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return answer.wait_for(0s) == std::future_status::ready; }, 30'000));
    EXPECT_EQ(answer.get(), Outcome::Answered);
    EXPECT_GT(activations, 0);

    bus.freeze();
    const auto begun = std::chrono::steady_clock::now();
    EXPECT_EQ(ask(300ms), Outcome::Silent) << "the bus hangs";
    EXPECT_LT(std::chrono::steady_clock::now() - begun, 3s);
    bus.thaw();
    first.reset();
    EXPECT_EQ(ask(30s), Outcome::Ended);
}

#include "TrayStatusItemTest.moc"

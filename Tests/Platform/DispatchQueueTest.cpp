#include "Platform/DispatchQueue.h"
#include "Platform/MainThread.h"
#include "Platform/Reactor.h"
#include "Tests/WaitUntil.h"

#include <QDir>
#include <QEventLoop>

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <future>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

namespace
{
void spinFor(std::chrono::milliseconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
    }
}
} // namespace

TEST(DispatchQueue, KeepsTheOrderOfCallsFromOneThreadWhateverTheirKind)
{
    const DispatchQueue queue("order");
    std::vector<int> order;
    for (int i = 0; i < 3000; i += 3) {
        queue.async([&order, i] { order.push_back(i); });
        queue.dispatch([&order, i] { order.push_back(i + 1); });
        if (i % 100 == 0)
            queue.sync([&order, i] { order.push_back(i + 2); });
        else
            queue.async([&order, i] { order.push_back(i + 2); });
    }
    queue.sync([] {});
    ASSERT_EQ(order.size(), 3000u);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(DispatchQueue, RunsOnePieceAtATimeForManyThreads)
{
    for (const auto pace : {DispatchQueue::Pace::Any, DispatchQueue::Pace::Short}) {
        const DispatchQueue queue("serial", pace);
        int unguarded = 0; // the queue alone keeps this whole
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&] {
                for (int i = 0; i < 500; ++i) {
                    queue.async([&] { ++unguarded; });
                    queue.sync([&] { ++unguarded; });
                    queue.dispatch([&] { ++unguarded; });
                }
            });
        }
        for (auto &thread : threads)
            thread.join();
        queue.sync([] {});
        EXPECT_EQ(unguarded, 6000);
    }
}

TEST(DispatchQueue, AnIdleQueueIsBorrowedByTheCaller)
{
    const DispatchQueue queue("borrowed"), quick("short", DispatchQueue::Pace::Short);
    const auto caller = std::this_thread::get_id();
    std::vector<std::thread::id> ranOn;
    const auto note = [&] { ranOn.push_back(std::this_thread::get_id()); };
    queue.dispatch(note);
    queue.sync(note);
    quick.sync([&] { quick.dispatch(note); }); // short work that came meanwhile is run as well
    EXPECT_THAT(ranOn, ElementsAre(caller, caller, caller));
}

TEST(DispatchQueue, ABusyQueueLetsTheCallerGoOn)
{
    const DispatchQueue queue("busy");
    std::promise<void> letGo;
    std::atomic<bool> ran = false;
    queue.async([&] { letGo.get_future().wait(); });
    queue.dispatch([&] { ran = true; });
    EXPECT_FALSE(ran);
    letGo.set_value();
    queue.sync([] {});
    EXPECT_TRUE(ran);
}

TEST(DispatchQueue, WorkQueuedFromWithinRunsAfterwards)
{
    const DispatchQueue queue("nested");
    std::vector<int> order;
    queue.sync([&] {
        queue.dispatch([&] { order.push_back(3); });
        queue.async([&] { order.push_back(4); });
        queue.sync([&] { order.push_back(1); });
        order.push_back(2);
    });
    queue.sync([] {});
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4));
}

TEST(DispatchQueue, KnowsTheQueuesThatTheCallerIsInsideOf)
{
    const DispatchQueue outer("outer"), inner("inner");
    EXPECT_FALSE(outer.isCurrent());
    outer.sync([&] {
        EXPECT_FALSE(inner.isCurrent());
        inner.sync([&] {
            EXPECT_TRUE(inner.isCurrent());
            EXPECT_TRUE(outer.isCurrent());
        });
        EXPECT_FALSE(inner.isCurrent());
    });
    EXPECT_FALSE(outer.isCurrent());
    EXPECT_TRUE(DispatchQueue::main().isCurrent());
}

TEST(DispatchQueue, StrandsThatWaitForOthersDoNotNeedMoreThreadsThanThereAre)
{
    // More chains than pool threads, each waiting for work that another thread has queued but nobody has begun.
    std::atomic<int> done = 0;
    std::vector<DispatchQueue> queues;
    for (int i = 0; i < 8; ++i)
        queues.emplace_back("chain");
    for (int i = 0; i < 8; ++i) {
        queues[i].async([&, i] {
            if (i % 2 == 0) {
                queues[i + 1].async([] {});
                queues[i + 1].sync([&] { ++done; });
            } else {
                ++done;
            }
        });
    }
    EXPECT_TRUE(waitUntil([&] { return done == 8; }));
}

TEST(DispatchQueue, NoCrowdOfQueuesMakesMoreThanTwoPoolThreads)
{
    std::atomic<int> done = 0;
    for (int i = 0; i < 200; ++i)
        DispatchQueue("one of many").async([&] { ++done; });
    ASSERT_TRUE(waitUntil([&] { return done == 200; }));

    int poolThreads = 0;
    const auto tasks = QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &task : tasks) {
        QFile name(u"/proc/self/task/%1/comm"_s.arg(task));
        ASSERT_TRUE(name.open(QIODevice::ReadOnly));
        poolThreads += name.readAll().startsWith("corvane-pool") ? 1 : 0;
    }
    EXPECT_GE(poolThreads, 1);
    EXPECT_LE(poolThreads, 2);
}

TEST(DispatchQueue, DelayedWorkRunsInTheOrderOfItsMoments)
{
    const DispatchQueue queue("delayed");
    std::vector<int> order;
    const auto start = std::chrono::steady_clock::now();
    queue.after(40ms, [&] { order.push_back(40); });
    queue.after(1ms, [&] { order.push_back(1); });
    queue.after(0ms, [&] { order.push_back(0); });
    std::atomic<bool> last = false;
    DispatchQueue::main().after(41ms, [&] { last = true; });
    ASSERT_TRUE(waitUntil([&] { return last.load(); }));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 41ms);
    queue.sync([] {});
    EXPECT_THAT(order, ElementsAre(0, 1, 40));
}

TEST(MainQueue, RunsNothingInsideTheCallAndAllInOrderOfWhateverThread)
{
    std::vector<int> order;
    DispatchQueue::main().async([&] { order.push_back(1); });
    DispatchQueue::main().dispatch([&] { order.push_back(2); });
    EXPECT_TRUE(order.empty());
    std::atomic<bool> elsewhere = true, home = false;
    std::thread([&] {
        elsewhere = isMainThread();
        DispatchQueue::main().sync([&] { order.push_back(3); });
        onMainThread([&] { home = isMainThread(); });
    }).detach();
    ASSERT_TRUE(waitUntil([&] { return home.load(); }));
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
    EXPECT_FALSE(elsewhere);
}

TEST(MainQueue, IsBorrowedByTheMainThreadWhenIdle)
{
    ASSERT_TRUE(waitUntil([] {
        const auto ran = std::make_shared<bool>(false);
        DispatchQueue::main().dispatch([ran] { *ran = true; });
        return *ran;
    }));
    bool ran = false;
    onMainThread([&] { ran = true; });
    EXPECT_TRUE(ran);
}

TEST(MainQueue, OtherThreadsWaitForWhatTheyHaveDoneAtHome)
{
    std::atomic<bool> ended = false;
    bool ran = false, saysSo = false;
    std::thread worker([&] {
        saysSo = onMainThreadAndWait([&] { ran = isMainThread(); });
        EXPECT_TRUE(ran) << "it did not wait";
        ended = true;
    });
    EXPECT_TRUE(waitUntil([&] { return ended.load(); }));
    worker.join();
    EXPECT_TRUE(saysSo);
    EXPECT_TRUE(onMainThreadAndWait([] {}));
}

TEST(MainQueue, ABurstIsCutIntoSlices)
{
    std::vector<quint64> turns;
    for (int i = 0; i < 3; ++i) {
        DispatchQueue::main().async([&] {
            turns.push_back(mainThreadTurn());
            spinFor(9ms);
        });
    }
    bool loopTurned = false;
    QTimer::singleShot(0, [&] { loopTurned = turns.size() < 3; });
    ASSERT_TRUE(waitUntil([&] { return turns.size() == 3; }));
    EXPECT_TRUE(loopTurned) << "the loop did not get its turn before the burst was over";
    EXPECT_LT(turns[0], turns[1]);
    EXPECT_LT(turns[1], turns[2]);
}

TEST(MainQueue, AnEventLoopInsideAPieceOfWorkRunsWhatWaitsBehindIt)
{
    std::vector<int> order;
    QEventLoop dialog;
    DispatchQueue::main().async([&] {
        order.push_back(1);
        dialog.exec();
        order.push_back(3);
    });
    DispatchQueue::main().async([&] {
        order.push_back(2);
        dialog.quit();
    });
    ASSERT_TRUE(waitUntil([&] { return order.size() == 3; }));
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(Reactor, ReportsOnceForEachTimeItIsArmed)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
    std::atomic<int> reports = 0;
    {
        const auto watch = Reactor::shared().watch(ends[0], [&](Reactor::Events events) {
            EXPECT_TRUE(events & Reactor::Readable);
            ++reports;
        });
        ASSERT_EQ(::write(ends[1], "x", 1), 1);
        ASSERT_TRUE(watch->arm(Reactor::Readable)); // the byte was there before
        ASSERT_TRUE(waitUntil([&] { return reports == 1; }));
        ASSERT_EQ(::write(ends[1], "y", 1), 1);
        std::atomic<bool> later = false;
        Reactor::shared().callAfter(5ms, [&] { later = true; });
        ASSERT_TRUE(waitUntil([&] { return later.load(); }));
        EXPECT_EQ(reports, 1);
        ASSERT_TRUE(watch->arm(Reactor::Readable));
        ASSERT_TRUE(waitUntil([&] { return reports == 2; }));
    }
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST(Reactor, ADestroyedTimerDoesNotFire)
{
    std::atomic<bool> dropped = false, kept = false;
    auto first = Reactor::shared().startTimer(5ms, [&] { dropped = true; });
    const auto second = Reactor::shared().startTimer(10ms, [&] { kept = true; });
    first.reset();
    ASSERT_TRUE(waitUntil([&] { return kept.load(); }));
    EXPECT_FALSE(dropped);
}

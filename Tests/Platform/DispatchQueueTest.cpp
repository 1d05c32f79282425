#include "Platform/DispatchQueue.h"
#include "Platform/MainThread.h"
#include "Tests/WaitUntil.h"

#include <QDir>
#include <QEventLoop>

#include <gmock/gmock.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;

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
        const auto count = [&] { ++unguarded; };
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([&] {
                for (int i = 0; i < 500; ++i) {
                    queue.async(count);
                    queue.sync(count);
                    queue.dispatch(count);
                }
            });
        }
        for (auto &thread : threads)
            thread.join();
        queue.sync([] {});
        EXPECT_EQ(unguarded, 6000);
    }
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

TEST(DispatchQueue, StrandsThatWaitForOthersDoNotNeedMoreThreadsThanThereAre)
{
    // More chains than pool threads, each waiting for work that another thread has queued but nobody has begun.
    std::atomic<int> done = 0;
    std::vector<DispatchQueue> queues;
    for (int i = 0; i < 8; ++i)
        queues.emplace_back("chain");
    for (int i = 0; i < 8; i += 2) {
        queues[i].async([&, i] {
            queues[i + 1].async([] {});
            queues[i + 1].sync([&] { ++done; });
        });
    }
    EXPECT_TRUE(waitUntil([&] { return done == 4; }));
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
    std::atomic<bool> ended = false;
    std::thread worker([&] {
        EXPECT_FALSE(isMainThread());
        DispatchQueue::main().sync([&] { order.push_back(3); });
        bool ran = false;
        EXPECT_TRUE(onMainThreadAndWait([&] { ran = isMainThread(); }));
        EXPECT_TRUE(ran) << "it did not wait, or ran elsewhere";
        onMainThread([&] { ended = isMainThread(); });
    });
    EXPECT_TRUE(waitUntil([&] { return ended.load(); }));
    worker.join();
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(MainQueue, ABurstIsCutIntoSlices)
{
    std::vector<quint64> turns;
    for (int i = 0; i < 3; ++i) {
        DispatchQueue::main().async([&] {
            turns.push_back(mainThreadTurn());
            const auto end = std::chrono::steady_clock::now() + 9ms;
            while (std::chrono::steady_clock::now() < end) {
            }
        });
    }
    bool loopTurned = false;
    QTimer::singleShot(0, [&] { loopTurned = turns.size() < 3; });
    ASSERT_TRUE(waitUntil([&] { return turns.size() == 3; }));
    EXPECT_TRUE(loopTurned) << "the loop did not get its turn before the burst was over";
    EXPECT_TRUE(turns[0] < turns[1] && turns[1] < turns[2]);
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

#include "Platform/Clock.h"
#include "Tests/WaitUntil.h"

#include <gmock/gmock.h>

#include <vector>

using namespace std::chrono_literals;
using testing::ElementsAre;

namespace
{
const QDateTime Noon(QDate(2026, 11, 22), QTime(12, 0));
}

TEST(ManualClock, FiresInTheOrderOfTheMomentsAndShowsEachMoment)
{
    ManualClock clock(Noon);
    std::vector<int> order;
    std::vector<QTime> seen;
    const auto note = [&](int id) {
        return [&, id] {
            order.push_back(id);
            seen.push_back(clock.now().time());
        };
    };
    const auto late = clock.start(10s, Clock::Repeat::Once, note(1));
    const auto often = clock.start(4s, Clock::Repeat::Forever, note(2));
    const auto sameAsLate = clock.start(10s, Clock::Repeat::Once, note(3));
    clock.advance(9999ms);
    EXPECT_THAT(order, ElementsAre(2, 2));
    clock.advance(2001ms);
    EXPECT_THAT(order, ElementsAre(2, 2, 1, 3, 2));
    EXPECT_THAT(seen, ElementsAre(QTime(12, 0, 4), QTime(12, 0, 8), QTime(12, 0, 10), QTime(12, 0, 10),
                                  QTime(12, 0, 12)));
    EXPECT_EQ(clock.now(), Noon.addSecs(12));
}

TEST(ManualClock, ADroppedTimerIsSilentAndAFiredOneIsSpent)
{
    ManualClock clock(Noon);
    int fired = 0;
    auto dropped = clock.start(1s, Clock::Repeat::Forever, [&] { ++fired; });
    const auto spent = clock.start(1s, Clock::Repeat::Once, [&] { ++fired; });
    EXPECT_EQ(clock.runningTimers(), 2);
    dropped.reset();
    clock.advance(10s);
    EXPECT_EQ(fired, 1);
    EXPECT_EQ(clock.runningTimers(), 0);
}

TEST(ManualClock, ATimerMayDropItselfAndStartAnother)
{
    ManualClock clock(Noon);
    int ticks = 0;
    std::unique_ptr<Clock::Timer> timer, next;
    timer = clock.start(1s, Clock::Repeat::Forever, [&] {
        ++ticks;
        timer.reset();
        next = clock.start(1s, Clock::Repeat::Once, [&] { ticks += 10; });
    });
    clock.advance(5s);
    EXPECT_EQ(ticks, 11);
}

TEST(SystemClock, FiresOnTheEventLoopUntilDropped)
{
    SystemClock clock;
    int ticks = 0;
    std::unique_ptr<Clock::Timer> timer = clock.start(1ms, Clock::Repeat::Forever, [&] {
        if (++ticks == 3)
            timer.reset(); // from within its own call
    });
    EXPECT_EQ(ticks, 0);
    bool later = false;
    ASSERT_TRUE(waitUntil([&] { return ticks == 3; }));
    const auto after = clock.start(5ms, Clock::Repeat::Once, [&] { later = true; });
    ASSERT_TRUE(waitUntil([&] { return later; }));
    EXPECT_EQ(ticks, 3);
}

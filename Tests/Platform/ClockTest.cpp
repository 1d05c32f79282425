#include "Platform/Clock.h"
#include "Tests/WaitUntil.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

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

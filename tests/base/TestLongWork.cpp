#include "base/LongWork.h"

#include <gtest/gtest.h>

#include <thread>

using namespace std::chrono_literals;

TEST(LongWork, tells_once_and_not_before_the_time) {
    int told = 0;
    const LongWork work(20ms, [&] { ++told; });
    LongWork::step();
    EXPECT_EQ(told, 0);
    std::this_thread::sleep_for(25ms);
    EXPECT_EQ(told, 0) << "work that takes no steps tells nothing";
    LongWork::step();
    LongWork::step();
    EXPECT_EQ(told, 1);
}

TEST(LongWork, tells_before_work_without_steps_that_will_take_long) {
    int told = 0;
    const LongWork work(1h, [&] { ++told; });
    LongWork::expect(59min);
    EXPECT_EQ(told, 0);
    LongWork::expect(60min);
    EXPECT_EQ(told, 1);
}

TEST(LongWork, steps_of_work_that_nobody_waits_for_tell_nothing) {
    int told = 0;
    {
        const LongWork work(0ms, [&] { ++told; });
    }
    LongWork::step();
    EXPECT_EQ(told, 0);
}

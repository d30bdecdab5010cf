#include "base/StageTimes.h"

#include <gtest/gtest.h>

#include <numeric>
#include <thread>

namespace {

double of(Stage stage) {
    return StageTimes::milliseconds()[static_cast<std::size_t>(stage)];
}

void pass(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

} // namespace

TEST(StageTimes, a_timer_counts_its_lifetime_for_its_stage) {
    StageTimes::begin();
    {
        const StageTimes::Timer timer(Stage::Write);
        pass(3);
    }
    const double once = of(Stage::Write);
    EXPECT_GE(once, 3);
    EXPECT_EQ(of(Stage::Filter), 0);
    {
        const StageTimes::Timer timer(Stage::Write);
        pass(2);
    }
    EXPECT_GE(of(Stage::Write), once + 2);
}

TEST(StageTimes, what_an_inner_timer_counts_is_not_counted_twice) {
    StageTimes::begin();
    {
        const StageTimes::Timer outer(Stage::Decorate);
        pass(2);
        {
            const StageTimes::Timer inner(Stage::Reduce);
            pass(4);
        }
        pass(2);
    }
    EXPECT_GE(of(Stage::Reduce), 4);
    EXPECT_GE(of(Stage::Decorate), 4);
    const auto times = StageTimes::milliseconds();
    EXPECT_LE(std::accumulate(times.begin(), times.end(), 0.0), StageTimes::total());
}

TEST(StageTimes, begin_starts_from_zero) {
    StageTimes::begin();
    {
        const StageTimes::Timer timer(Stage::Decode);
        pass(1);
    }
    StageTimes::begin();
    EXPECT_EQ(of(Stage::Decode), 0);
}

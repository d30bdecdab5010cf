#include "base/StageTimes.h"

#include <algorithm>

namespace {

struct Clocks {
    bool areRunning = false;
    StageTimes::Clock::time_point begin;
    StageTimes::Clock::time_point last; ///< the time of stages is counted up to here
    std::array<StageTimes::Clock::duration, StageTimes::stageCount> times{};
    StageTimes::Timer* innermost = nullptr;
};

Clocks& clocks() {
    static Clocks clocks;
    return clocks;
}

double inMilliseconds(StageTimes::Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

} // namespace

void StageTimes::begin() {
    clocks() = {};
    clocks().areRunning = true;
    clocks().begin = Clock::now();
}

std::array<double, StageTimes::stageCount> StageTimes::milliseconds() {
    std::array<double, stageCount> result{};
    std::ranges::transform(clocks().times, result.begin(), inMilliseconds);
    return result;
}

double StageTimes::total() {
    return clocks().areRunning ? inMilliseconds(Clock::now() - clocks().begin) : 0;
}

StageTimes::Timer::Timer(Stage stage) : m_stage(stage) {
    Clocks& c = clocks();
    if (!c.areRunning)
        return;
    const Clock::time_point now = Clock::now();
    m_outer = c.innermost;
    if (m_outer != nullptr)
        c.times[static_cast<std::size_t>(m_outer->m_stage)] += now - c.last;
    c.innermost = this;
    c.last = now;
}

StageTimes::Timer::~Timer() {
    Clocks& c = clocks();
    if (!c.areRunning)
        return;
    const Clock::time_point now = Clock::now();
    c.times[static_cast<std::size_t>(m_stage)] += now - c.last;
    c.innermost = m_outer;
    c.last = now;
}

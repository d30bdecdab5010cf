#pragma once

#include <chrono>
#include <functional>

/// Tells once that a piece of work takes long, from within the work. For one thread, and one piece at a time.
class LongWork {
  public:
    using Milliseconds = std::chrono::milliseconds;

    /// As long as it lives, the first step after `patience` calls `tell`.
    LongWork(Milliseconds patience, std::function<void()> tell);
    ~LongWork();
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;

    /// Work that may take long calls this all the time. It costs little.
    static void step() { expect({}); }

    /// Work without steps calls this before it begins, with the time that it may take.
    static void expect(Milliseconds time) {
        if (current != nullptr)
            current->look(time);
    }

  private:
    using Clock = std::chrono::steady_clock;

    void look(Milliseconds ahead);

    static LongWork* current;

    Clock::time_point m_due;
    std::function<void()> m_tell;
};

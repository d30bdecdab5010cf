#pragma once

#include <array>
#include <chrono>
#include <cstddef>

/// What the work on a set consists of.
enum class Stage {
    Decode,   ///< from the file's bytes to pixels
    Reduce,   ///< the reduced copies, and from one of these, or from a drawing, to an icon's pixels
    Decorate, ///< clip and border
    Tiff,     ///< into a TIFF encoding and back
    Choose,   ///< which filter and compressor suit a picture
    Filter,
    Compress,
    Write,
};

/// How long each stage took. For one thread, and only where it was asked for: a clock that nobody reads costs
/// nothing.
class StageTimes {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::size_t stageCount = 8;

    /// Each stage's name, for people and programs.
    static constexpr std::array<const char*, stageCount> names{"decode", "reduce", "decorate", "tiff",
                                                               "choose", "filter", "compress", "write"};

    /// Counts from here on, from zero.
    static void begin();

    /// Milliseconds of each stage since then.
    static std::array<double, stageCount> milliseconds();

    /// Milliseconds in all since then.
    static double total();

    /// Counts its lifetime for a stage. What happens inside another one meanwhile counts for that one only.
    class Timer {
      public:
        explicit Timer(Stage stage);
        ~Timer();
        Timer(const Timer&) = delete;
        Timer& operator=(const Timer&) = delete;

      private:
        Stage m_stage;
        Timer* m_outer = nullptr;
    };
};

#pragma once

#include <array>
#include <chrono>
#include <cstddef>

/// The stages of making an icon set.
enum class Stage {
    Decode,   ///< from the file's bytes to pixels
    Reduce,   ///< makes the reduced copies; draws an icon's pixels from one of them, or from an SVG drawing
    Decorate, ///< clip and border
    Tiff,     ///< into a TIFF encoding and back
    Choose,   ///< chooses the filter and the compressor for a picture
    Filter,
    Compress,
    Write,
};

/// Measures how long each stage takes. For one thread. It reads the clock only after `begin`.
class StageTimes {
  public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::size_t stageCount = 8;

    /// Each stage's name, for people and programs.
    static constexpr std::array<const char*, stageCount> names{"decode", "reduce", "decorate", "tiff",
                                                               "choose", "filter", "compress", "write"};

    /// Starts counting, from zero.
    static void begin();

    /// Milliseconds of each stage since `begin`.
    static std::array<double, stageCount> milliseconds();

    /// Milliseconds in all since `begin`.
    static double total();

    /// Counts its lifetime for a stage. The time of a timer inside another one counts for the inner stage
    /// only.
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

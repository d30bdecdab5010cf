#pragma once

#include "imaging/deflate/RunSymbols.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// Bytes that repeat what stands a little before them.
struct Run {
    std::uint32_t bytesBefore; ///< from the run before to this one
    std::uint16_t length;
    std::uint16_t distance; ///< index into RunSymbols::distances
};

/// A part of some bytes, divided into runs and the bytes between them.
class RunBlock {
  public:
    /// Enough for what a block's codes take, few enough for these to follow the picture.
    static constexpr std::size_t mostBytes = std::size_t{128} << 10;

    /// What is found in a block.
    struct Parts {
        /// How often each byte occurs that is in no run. A byte that stands twice in a row need not wait for
        /// its own count: there are four, which add up.
        std::array<std::array<std::uint32_t, RunSymbols::byteCount>, 4> bytes;
        std::array<std::uint32_t, RunSymbols::lengthCount> lengths;
        std::array<std::uint32_t, RunSymbols::distances.size()> distances;
        std::size_t runCount;
        std::array<Run, mostBytes / RunSymbols::leastRun> runs; ///< `runCount` of them
    };

    /// Takes the next part of `all`, which begins at `begin` and has at most `mostBytes`. Runs may repeat
    /// what stands before it.
    void take(std::span<const std::uint8_t> all, std::size_t begin);

    std::span<const std::uint8_t> bytes() const { return m_bytes; }
    /// In their order. Further bytes may stand behind the last one.
    std::span<const Run> runs() const { return std::span(m_parts.runs).first(m_parts.runCount); }

    /// How often each symbol of bytes and lengths occurs; the end of the block does once.
    std::array<std::uint32_t, RunSymbols::symbolCount> symbolCounts() const;
    /// How often each symbol of distances occurs.
    std::array<std::uint32_t, RunSymbols::distanceSymbolCount> distanceCounts() const;

  private:
    std::span<const std::uint8_t> m_bytes;
    Parts m_parts; // not all of it is ever filled
};

#pragma once

#include "imaging/deflate/RunSymbols.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// Bytes that are equal to the bytes a little before them.
struct Run {
    std::uint32_t bytesBefore; ///< between the run before and this one
    std::uint16_t length;
    std::uint16_t distance; ///< index into RunSymbols::distances
};

/// A part of some bytes, divided into runs and the bytes between them.
class RunBlock {
  public:
    /// Long enough that writing a block's codes is worth it, short enough for the codes to follow the
    /// picture.
    static constexpr std::size_t mostBytes = std::size_t{128} << 10;

    /// What is found in a block.
    struct Parts {
        /// How often each byte occurs outside of runs, as the sum of four tables. With four, equal bytes in a
        /// row do not wait for the same counter.
        std::array<std::array<std::uint32_t, RunSymbols::byteCount>, 4> bytes;
        std::array<std::uint32_t, RunSymbols::lengthCount> lengths;
        std::array<std::uint32_t, RunSymbols::distances.size()> distances;
        std::size_t runCount;
        std::array<Run, mostBytes / RunSymbols::leastRun> runs; ///< `runCount` of them
    };

    /// Takes up to `mostBytes` bytes of `all` from `begin` on. Runs may repeat bytes before `begin`.
    void take(std::span<const std::uint8_t> all, std::size_t begin);

    std::span<const std::uint8_t> bytes() const { return m_bytes; }
    /// The runs in their order. More bytes may follow the last run.
    std::span<const Run> runs() const { return std::span(m_parts.runs).first(m_parts.runCount); }

    /// How often each symbol of bytes and lengths occurs. The end of the block occurs once.
    std::array<std::uint32_t, RunSymbols::symbolCount> symbolCounts() const;
    /// How often each symbol of distances occurs.
    std::array<std::uint32_t, RunSymbols::distanceSymbolCount> distanceCounts() const;

  private:
    std::span<const std::uint8_t> m_bytes;
    Parts m_parts; // not initialised: `take` fills what is used
};

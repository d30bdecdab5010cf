#pragma once

#include "imaging/deflate/BitWriter.h"
#include "imaging/deflate/RunBlock.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

/// Writes a deflate stream (RFC 1951) for filtered pictures: of repetitions only runs are used, which repeat
/// the last byte or one of the last three pixels of four bytes. All other bytes get a code of their own, the
/// shorter the more often they occur nearby. In photographs and gradients there is little more to be had;
/// this takes a fifth of the time of a search through the window. The same bytes give the same stream, in
/// whatever parts they come.
class RunCoder {
  public:
    /// The most bytes that `length` bytes take while they are written.
    static std::size_t bound(std::size_t length);

    /// How long the stream of these bytes is.
    static std::size_t length(std::span<const std::uint8_t> bytes);

    /// For `length` bytes in parts of at most `largestPart`. For this room alone, whose public functions tell
    /// of it: may throw std::bad_alloc.
    RunCoder(std::size_t length, std::size_t largestPart);

    /// Where the next part is to be put.
    std::uint8_t* nextPart() { return m_bytes.get() + m_end; }
    /// Takes the `size` bytes that are there now. Writes to `out`, where the stream goes on and where there
    /// is room for `bound(RunBlock::mostBytes + size)` bytes; returns how many were written.
    std::size_t addPart(std::size_t size, std::uint8_t* out);
    /// Ends the stream in the same way, as with no bytes.
    std::size_t finish(std::uint8_t* out);

  private:
    void writeBlock(bool isLast);

    BitWriter m_writer{nullptr};
    RunBlock m_block;
    std::unique_ptr<std::uint8_t[]> m_bytes; ///< what runs may still repeat, and what is not yet written
    std::size_t m_begin = 0;                 ///< of the latter
    std::size_t m_end = 0;
};

#pragma once

#include "imaging/deflate/BitWriter.h"
#include "imaging/deflate/RunBlock.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

/// Writes a deflate stream (RFC 1951) for filtered pictures. It uses only repetitions of the last byte or of
/// one of the last three pixels of four bytes: runs. Every other byte gets a code, which is shorter the more
/// often the byte occurs nearby. In photographs and gradients there is little more to save, and this takes a
/// fifth of the time of a search through the window. The same bytes give the same stream, however they are
/// divided into parts.
class RunCoder {
  public:
    /// The most room, in bytes, that `length` bytes take while they are written.
    static std::size_t bound(std::size_t length);

    /// The length in bytes of the stream of `bytes`.
    static std::size_t length(std::span<const std::uint8_t> bytes);

    /// For `length` bytes in parts of at most `largestPart`. Only this room uses it: it may throw
    /// std::bad_alloc, which the room's public functions turn into OutOfMemory.
    RunCoder(std::size_t length, std::size_t largestPart);

    /// The place for the next part's bytes.
    std::uint8_t* nextPart() { return m_bytes.get() + m_end; }
    /// Takes `size` bytes from that place. The stream goes on at `out`, which has room for
    /// `bound(RunBlock::mostBytes + size)` bytes. Returns how many bytes were written.
    std::size_t addPart(std::size_t size, std::uint8_t* out);
    /// Ends the stream. `out` needs the room that it needs for a part of 0 bytes. Returns how many bytes were
    /// written.
    std::size_t finish(std::uint8_t* out);

  private:
    void writeBlock(bool isLast);

    BitWriter m_writer{nullptr};
    RunBlock m_block;
    std::unique_ptr<std::uint8_t[]> m_bytes; ///< bytes that runs may still repeat, then bytes to be written
    std::size_t m_begin = 0;                 ///< of the bytes to be written
    std::size_t m_end = 0;
};

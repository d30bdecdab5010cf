#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// Deflate streams (RFC 1951) in which no repetition is looked for: each byte gets a code of its own, the
/// shorter the more often it occurs nearby. For filtered photographs, in which next to nothing repeats, that
/// is nearly all that there is to be had, in a third of the time.
namespace ByteCoder {

/// The most bytes that a stream of `length` bytes takes while it is written.
std::size_t bound(std::size_t length);

/// Writes the stream to `out`, where there is room for `bound` bytes, and returns its length. The same bytes
/// give the same stream. Takes no memory.
std::size_t write(std::span<const std::uint8_t> bytes, std::uint8_t* out);

} // namespace ByteCoder

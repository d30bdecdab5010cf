#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// The prefix codes of deflate (RFC 1951, section 3.2.2).
namespace PrefixCode {

/// One symbol's code: its bits in the order in which they are written, the first one lowest.
struct Code {
    std::uint16_t bits = 0;
    std::uint16_t length = 0; ///< 0 for a symbol that does not occur
};

inline constexpr std::size_t maximumSymbols = 288;

/// Codes for symbols that occur that many times, none longer than `longest` bits. At least two symbols get a
/// code, since some decoders want no fewer. There are as many codes as counts, at most `maximumSymbols`.
void assign(std::span<const std::uint32_t> counts, unsigned longest, std::span<Code> codes);

} // namespace PrefixCode

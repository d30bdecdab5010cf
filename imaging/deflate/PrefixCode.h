#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// The prefix codes of deflate (RFC 1951, section 3.2.2).
namespace PrefixCode {

/// One symbol's code. The bit that is written first is the lowest.
struct Code {
    std::uint16_t bits = 0;
    std::uint16_t length = 0; ///< 0 for a symbol that does not occur
};

inline constexpr std::size_t maximumSymbols = 288;

/// Fills `codes` with the codes of symbols that occur `counts` times. No code is longer than `longest` bits.
/// At least two symbols get a code, since some decoders refuse fewer. There are as many codes as counts, at
/// most `maximumSymbols`.
void assign(std::span<const std::uint32_t> counts, unsigned longest, std::span<Code> codes);

} // namespace PrefixCode

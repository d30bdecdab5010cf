#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The symbols of deflate (RFC 1951, section 3.2.5). Only four distances are used: one byte, and one, two or
/// three pixels of four bytes.
namespace RunSymbols {

inline constexpr std::size_t byteCount = 256;
inline constexpr std::size_t endOfBlock = 256;
inline constexpr std::size_t firstLength = 257;
inline constexpr std::size_t lengthCount = 29;
/// Bytes, the end, and lengths share one alphabet.
inline constexpr std::size_t symbolCount = firstLength + lengthCount;

inline constexpr std::size_t shortest = 3;
inline constexpr std::size_t longest = 258;

/// A symbol and the extra bits that follow it.
struct Extra {
    std::uint8_t symbol;
    std::uint8_t bits;
    std::uint8_t count;
};

/// How many extra bits follow a length symbol. `lengthSymbol` counts from `firstLength`.
constexpr std::uint8_t extraCountOf(std::size_t lengthSymbol) {
    constexpr std::size_t ofOneLength = 8;
    if (lengthSymbol < ofOneLength || lengthSymbol + 1 == lengthCount)
        return 0;
    return static_cast<std::uint8_t>(lengthSymbol / 4 - 1);
}

/// The symbol and the extra bits of each length, from `shortest` on. The symbols count from `firstLength`.
inline constexpr auto lengths = [] {
    std::array<Extra, longest - shortest + 1> all{};
    std::size_t at = 0;
    for (std::uint8_t symbol = 0; symbol + 1U < lengthCount; ++symbol) {
        const std::uint8_t count = extraCountOf(symbol);
        for (unsigned bits = 0; bits < 1U << count; ++bits)
            all[at++] = {symbol, static_cast<std::uint8_t>(bits), count};
    }
    // The longest length has its own symbol, though the symbol before has extra bits for it.
    all.back() = {lengthCount - 1, 0, 0};
    return all;
}();

constexpr const Extra& lengthOf(std::size_t length) {
    return lengths[length - shortest];
}

/// The least length of a run: a shorter one takes no fewer bits than its bytes.
inline constexpr std::size_t leastRun = 10;

struct Distance {
    std::size_t bytes;
    std::size_t leastRun; ///< at this distance
    Extra extra;
};

inline constexpr std::size_t distanceSymbolCount = 7;
inline constexpr std::array<Distance, 4> distances{
    {{1, leastRun, {0, 0, 0}}, {4, leastRun, {3, 0, 0}}, {8, 14, {5, 1, 1}}, {12, 14, {6, 3, 2}}}};
inline constexpr std::size_t farthest = distances.back().bytes;

} // namespace RunSymbols

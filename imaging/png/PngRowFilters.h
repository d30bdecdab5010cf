#pragma once

#include "imaging/png/PngSamples.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

/// The filter of each row of a picture, and ways to choose them. All of it counts in whole numbers, so that
/// the choice is the same on every processor. Source of the filters: ISO/IEC 15948, chapter 9.
namespace PngRowFilters {

/// The filter type of each row: 0 to 4.
using Types = std::vector<std::uint8_t>;

inline constexpr int typeCount = 5;

/// What a row costs. `above` are the bytes that stand before it in the file, already filtered; `row` is its
/// filter byte and its bytes. Less is better.
using Cost =
    std::function<std::int64_t(std::span<const std::uint8_t> above, std::span<const std::uint8_t> row)>;

/// The sum of the magnitudes of the bytes as signed numbers.
Cost sums();
/// The bits that the bytes take where each is coded by how often it comes in the row.
Cost entropy();
/// How many different pairs of neighbours the row has.
Cost pairs();
/// The bits that the pairs of neighbours take.
Cost pairEntropy();
/// What `length` says of the row together with the two rows above.
Cost lengths(std::function<std::size_t(std::span<const std::uint8_t>)> length);

/// For each row the type of the least cost; of equal costs the lowest.
Types chosen(const PngSamples& samples, const Cost& cost);

/// The picture's rows, each after its filter byte.
std::vector<std::uint8_t> filtered(const PngSamples& samples, const Types& types);

} // namespace PngRowFilters

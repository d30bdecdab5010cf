// Compiled once for each instruction set; the best one is chosen when the program runs.
#include "imaging/deflate/RunBlock.h"

#include "imaging/simd/VectorDispatch.h"

#include <algorithm>
#include <bit>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/deflate/RunBlock.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace runblock::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using RunSymbols::distances;
using RunSymbols::farthest;

/// How many bytes are compared at once: one for each bit of a mask.
constexpr std::size_t window = 64;

/// A mask of the window's bytes. A bit is set where a byte equals the byte `distance` before it.
HWY_INLINE std::uint64_t repeated(const std::uint8_t* at, std::size_t distance) {
    std::uint64_t mask = 0;
#if HWY_TARGET == HWY_SCALAR
    for (std::size_t i = 0; i < window; ++i)
        mask |= std::uint64_t{at[i] == (at - distance)[i]} << i;
#else
    const hn::CappedTag<std::uint8_t, window> tag;
    constexpr std::size_t lanes = hn::MaxLanes(tag);
    for (std::size_t i = 0; i < window; i += lanes) {
        std::uint64_t part = 0;
        hn::StoreMaskBits(tag, hn::Eq(hn::LoadU(tag, at + i), hn::LoadU(tag, at + i - distance)),
                          reinterpret_cast<std::uint8_t*>(&part));
        mask |= part << i;
    }
#endif
    return mask;
}

/// The bits at which at least `Length` set bits begin.
template <std::size_t Length>
HWY_INLINE std::uint64_t beginnings(std::uint64_t mask) {
    std::size_t found = 1;
    for (; 2 * found <= Length; found *= 2)
        mask &= mask >> found;
    return found < Length ? mask & mask >> (Length - found) : mask;
}

/// The bytes around a place, from `farthest` before it to the end of the window that begins there. Zeros
/// stand for bytes beyond the last one.
class Surroundings {
  public:
    Surroundings(const std::uint8_t* at, const std::uint8_t* last) : m_at(at) {
        const auto left = static_cast<std::size_t>(last - at);
        if (left >= window)
            return;
        m_copy.fill(0);
        std::memcpy(m_copy.data(), at - farthest, farthest + left);
        m_at = m_copy.data() + farthest;
    }
    const std::uint8_t* at() const { return m_at; }

  private:
    const std::uint8_t* m_at;
    std::array<std::uint8_t, farthest + window> m_copy;
};

/// How many bytes from `at` on equal the bytes `distance` before them: at least `known`, at most `most`.
HWY_INLINE std::size_t runLength(const std::uint8_t* at, const std::uint8_t* last, std::size_t distance,
                                 std::size_t known, std::size_t most) {
    while (known < most) {
        const Surroundings surroundings(at + known, last);
        const auto more = static_cast<std::size_t>(std::countr_one(repeated(surroundings.at(), distance)));
        known += more;
        if (more < window)
            break;
    }
    return std::min(known, most);
}

/// A run and the place at which it begins.
struct Found {
    std::size_t offset;
    std::size_t length;
    std::uint16_t distance; ///< index into `distances`
};

/// The first run that begins in a window, as far as the window shows it. Its length is 0 where no run begins.
HWY_INLINE Found firstRun(const std::uint8_t* at, std::uint64_t wanted) {
    const std::array<std::uint64_t, distances.size()> masks{
        repeated(at, distances[0].bytes) & wanted, repeated(at, distances[1].bytes) & wanted,
        repeated(at, distances[2].bytes) & wanted, repeated(at, distances[3].bytes) & wanted};
    const std::array<std::uint64_t, distances.size()> begins{
        beginnings<distances[0].leastRun>(masks[0]), beginnings<distances[1].leastRun>(masks[1]),
        beginnings<distances[2].leastRun>(masks[2]), beginnings<distances[3].leastRun>(masks[3])};
    const std::uint64_t anyBegins = begins[0] | begins[1] | begins[2] | begins[3];
    if (anyBegins == 0)
        return {0, 0, 0};
    const auto offset = static_cast<std::size_t>(std::countr_zero(anyBegins));
    Found found{offset, 0, 0};
    for (std::size_t i = 0; i < distances.size(); ++i) {
        if ((begins[i] >> offset & 1U) == 0)
            continue;
        // A farther distance takes more bits: its run has to be longer.
        const auto length = static_cast<std::size_t>(std::countr_one(masks[i] >> offset));
        if (length > found.length + (found.length > 0 ? distances[i].extra.count : 0))
            found = {offset, length, static_cast<std::uint16_t>(i)};
    }
    return found;
}

void count(const std::uint8_t* bytes, std::size_t size, RunBlock::Parts& parts) {
    constexpr std::size_t tables = 4;
    for (; size >= tables; size -= tables, bytes += tables) {
        for (std::size_t i = 0; i < tables; ++i)
            ++parts.bytes[i][bytes[i]];
    }
    for (std::size_t i = 0; i < size; ++i)
        ++parts.bytes[i][bytes[i]];
}

/// Divides [begin, end), a part of [first, last), into runs and the bytes between them.
void divide(const std::uint8_t* first, const std::uint8_t* begin, const std::uint8_t* end,
            const std::uint8_t* last, RunBlock::Parts& parts) {
    const std::uint8_t* counted = begin;
    const std::uint8_t* at =
        std::max(begin, first + std::min(farthest, static_cast<std::size_t>(last - first)));
    while (at < end) {
        const auto left = static_cast<std::size_t>(end - at);
        const std::uint64_t wanted = left < window ? (std::uint64_t{1} << left) - 1 : ~std::uint64_t{0};
        const Found found = firstRun(Surroundings(at, last).at(), wanted);
        if (found.length == 0) {
            if (left < window)
                break;
            // A run may begin near the window's end, where too little of it shows.
            at += window - (distances.back().leastRun - 1);
            continue;
        }
        at += found.offset;
        const std::size_t most = std::min(RunSymbols::longest, static_cast<std::size_t>(end - at));
        const std::size_t length =
            found.offset + found.length < window
                ? found.length
                : runLength(at, last, distances[found.distance].bytes, found.length, most);
        const auto before = static_cast<std::size_t>(at - counted);
        parts.runs[parts.runCount++] = {static_cast<std::uint32_t>(before),
                                        static_cast<std::uint16_t>(length), found.distance};
        ++parts.lengths[RunSymbols::lengthOf(length).symbol];
        ++parts.distances[found.distance];
        count(counted, before, parts);
        at += length;
        counted = at;
    }
    count(counted, static_cast<std::size_t>(end - counted), parts);
}

} // namespace runblock::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace runblock {
namespace {

VECTOR_EXPORT(divide);

} // namespace
} // namespace runblock

void RunBlock::take(std::span<const std::uint8_t> all, std::size_t begin) {
    using namespace runblock;
    m_bytes = all.subspan(begin, std::min(mostBytes, all.size() - begin));
    m_parts.bytes = {};
    m_parts.lengths = {};
    m_parts.distances = {};
    m_parts.runCount = 0;
    VECTOR_DISPATCH(divide)
    (all.data(), m_bytes.data(), m_bytes.data() + m_bytes.size(), all.data() + all.size(), m_parts);
}

std::array<std::uint32_t, RunSymbols::symbolCount> RunBlock::symbolCounts() const {
    using namespace RunSymbols;
    std::array<std::uint32_t, symbolCount> counts{};
    for (std::size_t byte = 0; byte < byteCount; ++byte) {
        for (const auto& table : m_parts.bytes)
            counts[byte] += table[byte];
    }
    counts[endOfBlock] = 1;
    std::ranges::copy(m_parts.lengths, counts.begin() + firstLength);
    return counts;
}

std::array<std::uint32_t, RunSymbols::distanceSymbolCount> RunBlock::distanceCounts() const {
    using namespace RunSymbols;
    std::array<std::uint32_t, distanceSymbolCount> counts{};
    for (std::size_t i = 0; i < distances.size(); ++i)
        counts[distances[i].extra.symbol] = m_parts.distances[i];
    return counts;
}

#endif

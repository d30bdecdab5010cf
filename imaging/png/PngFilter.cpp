// Compiled once for each instruction set; the best one is chosen when the program runs.
#include "imaging/png/PngFilter.h"

#include "imaging/simd/VectorDispatch.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/png/PngFilter.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace pngfilter::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

enum FilterType : std::uint8_t { NoneType, SubType, UpType, AverageType, PaethType };
constexpr std::size_t filterTypes = 5;

using Sums = std::array<std::uint64_t, filterTypes>;

/// A row and the row above it. A pixel of zeros stands before each.
struct Rows {
    const std::uint8_t* row;
    const std::uint8_t* above;
    std::size_t bytes;
    std::size_t pixelBytes;
};

#if HWY_TARGET == HWY_SCALAR

// Plain C++, for processors and compilers without vector instructions.

int paeth(int left, int above, int aboveLeft) {
    const int toLeft = std::abs(above - aboveLeft);
    const int toAbove = std::abs(left - aboveLeft);
    const int toAboveLeft = std::abs(left + above - 2 * aboveLeft);
    const int aboveOrCorner = toAbove <= toAboveLeft ? above : aboveLeft;
    return toLeft <= toAbove && toLeft <= toAboveLeft ? left : aboveOrCorner;
}

std::uint8_t filtered(FilterType type, const Rows& rows, std::size_t i) {
    const int left = rows.row[i - rows.pixelBytes];
    const int above = rows.above[i];
    const int aboveLeft = rows.above[i - rows.pixelBytes];
    const int predictions[filterTypes] = {0, left, above, (left + above) / 2, paeth(left, above, aboveLeft)};
    return static_cast<std::uint8_t>(rows.row[i] - predictions[type]);
}

void sumUp(const Rows& rows, Sums& sums) {
    for (std::size_t type = 0; type < filterTypes; ++type) {
        for (std::size_t i = 0; i < rows.bytes; ++i) {
            const unsigned byte = filtered(static_cast<FilterType>(type), rows, i);
            sums[type] += std::min(byte, 256 - byte);
        }
    }
}

void filterRow(FilterType type, const Rows& rows, std::uint8_t* out) {
    for (std::size_t i = 0; i < rows.bytes; ++i)
        out[i] = filtered(type, rows, i);
}

#else

using Tag = hn::ScalableTag<std::uint8_t>;
using SumTag = hn::Repartition<std::uint64_t, Tag>;
using Bytes = hn::Vec<Tag>;

/// A vector of a row's bytes, with the neighbours that filters use.
struct Neighbours {
    Bytes here;
    Bytes left;
    Bytes above;
    Bytes aboveLeft;
};

HWY_INLINE Neighbours neighbours(const Rows& rows, std::size_t at) {
    return {hn::LoadU(Tag(), rows.row + at), hn::LoadU(Tag(), rows.row + at - rows.pixelBytes),
            hn::LoadU(Tag(), rows.above + at), hn::LoadU(Tag(), rows.above + at - rows.pixelBytes)};
}

/// The same for a row's last bytes, which are too few for a vector: zeros follow them.
HWY_INLINE Neighbours lastNeighbours(const Rows& rows, std::size_t at) {
    HWY_ALIGN std::uint8_t padded[4][hwy::kMaxVectorSize] = {};
    const std::size_t rest = rows.bytes - at;
    const std::uint8_t* const from[4] = {rows.row + at, rows.row + at - rows.pixelBytes, rows.above + at,
                                         rows.above + at - rows.pixelBytes};
    for (std::size_t i = 0; i < 4; ++i)
        std::memcpy(padded[i], from[i], rest);
    return {hn::Load(Tag(), padded[0]), hn::Load(Tag(), padded[1]), hn::Load(Tag(), padded[2]),
            hn::Load(Tag(), padded[3])};
}

/// The neighbour that is nearest to left + above − above left; of equally near ones the first in this order.
HWY_INLINE Bytes paeth(const Neighbours& n) {
    const Bytes zero = hn::Zero(Tag());
    const Bytes aboveMore = hn::SaturatedSub(n.above, n.aboveLeft);
    const Bytes aboveLess = hn::SaturatedSub(n.aboveLeft, n.above);
    const Bytes leftMore = hn::SaturatedSub(n.left, n.aboveLeft);
    const Bytes leftLess = hn::SaturatedSub(n.aboveLeft, n.left);
    const Bytes toLeft = hn::Or(aboveMore, aboveLess);
    const Bytes toAbove = hn::Or(leftMore, leftLess);
    // The two differences add up where both have the same sign. A sum above 255 can't be the least.
    const Bytes apart = hn::Or(hn::SaturatedSub(toLeft, toAbove), hn::SaturatedSub(toAbove, toLeft));
    const auto haveOneSign =
        hn::And(hn::Eq(hn::Min(aboveMore, leftLess), zero), hn::Eq(hn::Min(aboveLess, leftMore), zero));
    const Bytes toAboveLeft = hn::IfThenElse(haveOneSign, hn::SaturatedAdd(toLeft, toAbove), apart);
    const Bytes least = hn::Min(hn::Min(toLeft, toAbove), toAboveLeft);
    const Bytes aboveOrCorner = hn::IfThenElse(hn::Eq(toAbove, least), n.above, n.aboveLeft);
    return hn::IfThenElse(hn::Eq(toLeft, least), n.left, aboveOrCorner);
}

template <FilterType Type>
HWY_INLINE Bytes filtered(const Neighbours& n) {
    if constexpr (Type == SubType)
        return hn::Sub(n.here, n.left);
    if constexpr (Type == UpType)
        return hn::Sub(n.here, n.above);
    if constexpr (Type == AverageType) {
        // AverageRound rounds up, but the format rounds down.
        const Bytes odd = hn::And(hn::Xor(n.left, n.above), hn::Set(Tag(), 1));
        return hn::Sub(n.here, hn::Sub(hn::AverageRound(n.left, n.above), odd));
    }
    if constexpr (Type == PaethType)
        return hn::Sub(n.here, paeth(n));
    return n.here;
}

void sumUp(const Rows& rows, Sums& sums) {
    const SumTag sumTag;
    const std::size_t step = hn::Lanes(Tag());
    auto none = hn::Zero(sumTag);
    auto sub = none;
    auto up = none;
    auto average = none;
    auto byPaeth = none;
    const auto magnitudes = [](Bytes bytes) HWY_ATTR {
        return hn::SumsOf8(hn::Min(bytes, hn::Sub(hn::Zero(Tag()), bytes)));
    };
    const auto add = [&](const Neighbours& n) HWY_ATTR {
        none = hn::Add(none, magnitudes(filtered<NoneType>(n)));
        sub = hn::Add(sub, magnitudes(filtered<SubType>(n)));
        up = hn::Add(up, magnitudes(filtered<UpType>(n)));
        average = hn::Add(average, magnitudes(filtered<AverageType>(n)));
        byPaeth = hn::Add(byPaeth, magnitudes(filtered<PaethType>(n)));
    };
    std::size_t at = 0;
    for (; at + step <= rows.bytes; at += step)
        add(neighbours(rows, at));
    if (at < rows.bytes)
        add(lastNeighbours(rows, at));
    sums = {hn::GetLane(hn::SumOfLanes(sumTag, none)), hn::GetLane(hn::SumOfLanes(sumTag, sub)),
            hn::GetLane(hn::SumOfLanes(sumTag, up)), hn::GetLane(hn::SumOfLanes(sumTag, average)),
            hn::GetLane(hn::SumOfLanes(sumTag, byPaeth))};
}

template <FilterType Type>
void filterRowBy(const Rows& rows, std::uint8_t* out) {
    const std::size_t step = hn::Lanes(Tag());
    std::size_t at = 0;
    for (; at + step <= rows.bytes; at += step)
        hn::StoreU(filtered<Type>(neighbours(rows, at)), Tag(), out + at);
    if (at == rows.bytes)
        return;
    HWY_ALIGN std::uint8_t last[hwy::kMaxVectorSize];
    hn::Store(filtered<Type>(lastNeighbours(rows, at)), Tag(), last);
    std::memcpy(out + at, last, rows.bytes - at);
}

void filterRow(FilterType type, const Rows& rows, std::uint8_t* out) {
    switch (type) {
    case NoneType:
        std::memcpy(out, rows.row, rows.bytes);
        break;
    case SubType:
        filterRowBy<SubType>(rows, out);
        break;
    case UpType:
        filterRowBy<UpType>(rows, out);
        break;
    case AverageType:
        filterRowBy<AverageType>(rows, out);
        break;
    case PaethType:
        filterRowBy<PaethType>(rows, out);
        break;
    }
}

#endif

void adaptive(const std::uint8_t* row, const std::uint8_t* above, std::size_t bytes, std::size_t pixelBytes,
              std::uint8_t* out) {
    const Rows rows{row, above, bytes, pixelBytes};
    Sums sums{};
    sumUp(rows, sums);
    out[0] = static_cast<std::uint8_t>(std::ranges::min_element(sums) - sums.begin());
    filterRow(static_cast<FilterType>(out[0]), rows, out + 1);
}

} // namespace pngfilter::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace pngfilter {
namespace {

VECTOR_EXPORT(adaptive);

constexpr std::size_t leadingBytes = 4;

} // namespace
} // namespace pngfilter

PngFilter::PngFilter(std::size_t rowBytes, std::size_t pixelBytes)
    : m_rowBytes(rowBytes), m_pixelBytes(pixelBytes) {
    for (std::vector<std::uint8_t>& row : m_rows)
        row.resize(pngfilter::leadingBytes + rowBytes);
}

std::uint8_t* PngFilter::nextRow() {
    m_current = 1 - m_current;
    return m_rows[m_current].data() + pngfilter::leadingBytes;
}

void PngFilter::adaptive(std::uint8_t* out) const {
    using namespace pngfilter;
    VECTOR_DISPATCH(adaptive)
    (m_rows[m_current].data() + leadingBytes, m_rows[1 - m_current].data() + leadingBytes, m_rowBytes,
     m_pixelBytes, out);
}

#endif

#include "imaging/pixels/Resampler.h"

#include "base/ShortMemory.h"
#include "imaging/pixels/Raster.h"
#include "imaging/pixels/RowResampler.h"
#include "imaging/simd/VectorDispatch.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixels/Resampler.cpp"
#include <hwy/foreach_target.h>
// after foreach_target
#include <hwy/highway.h>

// All arithmetic is in whole numbers. Sums then don't depend on their order: every processor gives the same
// bytes, and a mirrored picture gives mirrored bytes.
//
// Source samples have 8 bits, weights 14 fractional bits. Between the two passes a sample has 16 bits, 6 of
// them fractional. This leaves room for overshoot up to twice the range.

HWY_BEFORE_NAMESPACE();
namespace resampler::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

constexpr int betweenBits = 6;
constexpr int columnShift = ResamplerWeights::fractionBits - betweenBits;
constexpr int rowShift = ResamplerWeights::fractionBits + betweenBits;

#if HWY_TARGET == HWY_SCALAR

// The same in plain C++, for processors and compilers without vector instructions.

void filterColumns(const std::uint8_t* const* rows, const std::int16_t* weights, int pairs, std::size_t count,
                   std::int16_t* out) {
    std::fill_n(out, (count + 7) / 8 * 8, std::int16_t{0});
    for (std::size_t i = 0; i < count; ++i) {
        std::int32_t sum = 1 << (columnShift - 1);
        for (int tap = 0; tap < 2 * pairs; ++tap)
            sum += weights[tap] * rows[tap][i];
        out[i / 8 * 8 + i % 4 * 2 + i / 4 % 2] = static_cast<std::int16_t>(sum >> columnShift);
    }
}

void filterRow(const std::int16_t* row, const ResamplerWeights& weights, int count, std::uint8_t* out) {
    for (int x = 0; x < count; ++x, out += 4) {
        const std::int16_t* taps = row + 4 * static_cast<std::ptrdiff_t>(weights.start(x));
        const std::int16_t* factors = weights.weights(x);
        std::int32_t sums[4] = {};
        for (int pair = 0; pair < weights.pairs(); ++pair) {
            for (int i = 0; i < 4; ++i)
                sums[i] += taps[8 * pair + 2 * i] * factors[2 * pair] +
                           taps[8 * pair + 2 * i + 1] * factors[2 * pair + 1];
        }
        const std::int32_t alpha = (sums[3] + (1 << (rowShift - 1))) >> rowShift;
        for (int i = 0; i < 4; ++i) {
            const std::int32_t sample = std::min((sums[i] + (1 << (rowShift - 1))) >> rowShift, alpha);
            out[i] = static_cast<std::uint8_t>(std::clamp(sample, 0, 255));
        }
    }
}

#else

/// Filters columns: makes `count` samples of the row between the passes from `pairs` pairs of rows. `rows`
/// holds two pointers a pair. The samples of two neighbouring pixels come out side by side, r0 r1 g0 g1 b0 b1
/// a0 a1, so one multiplication takes a pair of taps. Where the last pixel has no neighbour, the neighbour's
/// samples are zero.
void filterColumns(const std::uint8_t* const* rows, const std::int16_t* weights, int pairs, std::size_t count,
                   std::int16_t* out) {
    // Interleaving stays within blocks of 16 bytes. The lower sums of a block belong to its first pixel, the
    // upper sums to its second.
    const hn::ScalableTag<std::int16_t> d16;
    const hn::Rebind<std::uint8_t, decltype(d16)> d8;
    const hn::RepartitionToWide<decltype(d16)> d32;
    const std::size_t lanes = hn::Lanes(d16);
    const auto round = hn::Set(d32, 1 << (columnShift - 1));

    const auto filtered = [&](std::size_t i, auto load) HWY_ATTR {
        auto lower0 = hn::Zero(d32);
        auto lower1 = hn::Zero(d32);
        auto upper0 = hn::Zero(d32);
        auto upper1 = hn::Zero(d32);
        for (int pair = 0; pair < pairs; ++pair) {
            const auto a = hn::PromoteTo(d16, load(rows[2 * pair] + i));
            const auto b = hn::PromoteTo(d16, load(rows[2 * pair + 1] + i));
            std::int32_t both = 0;
            std::memcpy(&both, weights + 2 * pair, sizeof both);
            const auto factors = hn::BitCast(d16, hn::Set(d32, both));
            lower0 =
                hn::ReorderWidenMulAccumulate(d32, hn::InterleaveLower(d16, a, b), factors, lower0, lower1);
            upper0 =
                hn::ReorderWidenMulAccumulate(d32, hn::InterleaveUpper(d16, a, b), factors, upper0, upper1);
        }
        const auto first = hn::Add(hn::RearrangeToOddPlusEven(lower0, lower1), round);
        const auto second = hn::Add(hn::RearrangeToOddPlusEven(upper0, upper1), round);
        // After the shift both sums have 16 bits.
        return hn::OddEven(hn::BitCast(d16, hn::ShiftLeft<16 - columnShift>(second)),
                           hn::BitCast(d16, hn::ShiftRight<columnShift>(first)));
    };

    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        hn::StoreU(filtered(i, [&](const std::uint8_t* p) HWY_ATTR { return hn::LoadU(d8, p); }), d16,
                   out + i);
    if (i == count)
        return;
    // The last few samples go through buffers of a whole vector.
    HWY_ALIGN std::uint8_t samples[hwy::kMaxVectorSize] = {};
    HWY_ALIGN std::int16_t results[hwy::kMaxVectorSize / 2] = {};
    const std::size_t rest = count - i;
    const auto loadRest = [&](const std::uint8_t* p) HWY_ATTR {
        std::memcpy(samples, p, rest);
        return hn::Load(d8, samples);
    };
    hn::Store(filtered(i, loadRest), d16, results);
    std::memcpy(out + i, results, (rest + 7) / 8 * 8 * sizeof *out);
}

/// Filters as many pixels as `d32` holds. `taps` are those of the first pixel. The taps of each next pixel
/// lie one pair of pixels further and have the same weights. Samples are clamped to 0 to 255, and colours to
/// their alpha.
template <class D>
HWY_INLINE void filterPixels(D d32, const std::int16_t* taps, const std::int16_t* factors, int pairs,
                             std::uint8_t* out) {
    const hn::Repartition<std::int16_t, D> d16;
    const hn::Rebind<std::uint8_t, D> d8;
    auto sum0 = hn::Zero(d32);
    auto sum1 = hn::Zero(d32);
    for (int pair = 0; pair < pairs; ++pair) {
        std::int32_t both = 0;
        std::memcpy(&both, factors + 2 * pair, sizeof both);
        sum0 = hn::ReorderWidenMulAccumulate(d32, hn::LoadU(d16, taps + 8 * pair),
                                             hn::BitCast(d16, hn::Set(d32, both)), sum0, sum1);
    }
    const auto round = hn::Set(d32, 1 << (rowShift - 1));
    const auto pixels = hn::ShiftRight<rowShift>(hn::Add(hn::RearrangeToOddPlusEven(sum0, sum1), round));
    const auto inRange = hn::Min(pixels, hn::Broadcast<3>(pixels));
    hn::StoreU(hn::DemoteTo(d8, inRange), d8, out);
}

#if HWY_CAP_GE256

/// The sum of a vector's blocks of four.
template <class D, class V>
HWY_INLINE hn::Vec<hn::FixedTag<std::int32_t, 4>> sumOfBlocks(D d, V vector) {
    const hn::Half<D> half;
    const auto sum = hn::Add(hn::LowerHalf(half, vector), hn::UpperHalf(half, vector));
    if constexpr (hn::MaxLanes(half) > 4)
        return sumOfBlocks(half, sum);
    else
        return sum;
}

/// Filters one pixel. A vector holds several pairs of its taps, and each of them has its own weights.
HWY_INLINE void filterLongPixel(const std::int16_t* taps, const std::int16_t* factors, int pairs,
                                std::uint8_t* out) {
    const hn::ScalableTag<std::int32_t> d32;
    const hn::Repartition<std::int16_t, decltype(d32)> d16;
    const hn::FixedTag<std::int32_t, 4> block;
    const hn::Rebind<std::uint8_t, decltype(block)> d8;
    static_assert(hn::MaxLanes(d32) / 4 <= ResamplerWeights::pairsTogether);
    constexpr int together = static_cast<int>(hn::MaxLanes(d32) / 4);
    const auto places = hn::IndicesFromVec(d32, hn::ShiftRight<2>(hn::Iota(d32, 0)));
    auto sum0 = hn::Zero(d32);
    auto sum1 = hn::Zero(d32);
    for (int pair = 0; pair < pairs; pair += together) {
        const auto both = hn::TableLookupLanes(hn::BitCast(d32, hn::LoadU(d16, factors + 2 * pair)), places);
        sum0 = hn::ReorderWidenMulAccumulate(d32, hn::LoadU(d16, taps + 8 * pair), hn::BitCast(d16, both),
                                             sum0, sum1);
    }
    const auto sum = sumOfBlocks(d32, hn::RearrangeToOddPlusEven(sum0, sum1));
    const auto pixel = hn::ShiftRight<rowShift>(hn::Add(sum, hn::Set(block, 1 << (rowShift - 1))));
    hn::StoreU(hn::DemoteTo(d8, hn::Min(pixel, hn::Broadcast<3>(pixel))), d8, out);
}

#endif

/// Makes one row of pixels from a row between the passes.
void filterRow(const std::int16_t* row, const ResamplerWeights& weights, int count, std::uint8_t* out) {
    const hn::ScalableTag<std::int32_t> several;
    const int step = static_cast<int>(hn::Lanes(several) / 4);
    const int pairs = weights.pairs();
    const auto tapsOf = [&](int x) { return row + 4 * static_cast<std::ptrdiff_t>(weights.start(x)); };
    const auto pixel = [&](int x) { return out + 4 * static_cast<std::ptrdiff_t>(x); };
    const auto filterOne = [&](int x) HWY_ATTR {
#if HWY_CAP_GE256
        filterLongPixel(tapsOf(x), weights.weights(x), pairs, pixel(x));
#else
        filterPixels(several, tapsOf(x), weights.weights(x), pairs, pixel(x));
#endif
    };
    int x = 0;
    for (; x < weights.uniformBegin(); ++x)
        filterOne(x);
    for (; x + step <= weights.uniformEnd(); x += step)
        filterPixels(several, tapsOf(x), weights.weights(x), pairs, pixel(x));
    for (; x < count; ++x)
        filterOne(x);
}

#endif

/// Makes one target row. `between` is room for the row between the passes; `weights` are those along a row.
void resampleRow(const RowTaps& taps, std::int16_t* between, const ResamplerWeights& weights, int count,
                 std::uint8_t* out) {
    filterColumns(taps.rows, taps.weights, taps.pairs, 4 * taps.width, between);
    filterRow(between, weights, count, out);
}

} // namespace resampler::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace resampler {
namespace {

VECTOR_EXPORT(resampleRow);

/// Stands inside the namespace: with a single instruction set VECTOR_DISPATCH gives a name relative to it.
void dispatch(const RowTaps& taps, std::int16_t* between, const ResamplerWeights& weights, int count,
              std::uint8_t* out) {
    VECTOR_DISPATCH(resampleRow)(taps, between, weights, count, out);
}

} // namespace
} // namespace resampler

RowResampler::RowResampler(const AxisMapping& x, const AxisMapping& y)
    : m_columns(y),
      m_rows(x == y ? m_columns.withEvenStarts() : ResamplerWeights(x).withEvenStarts()),
      m_sourceWidth(static_cast<std::size_t>(x.sourceLength)),
      m_sourceHeight(y.sourceLength),
      m_targetWidth(x.targetLength),
      m_targetHeight(y.targetLength),
      m_taps(static_cast<std::size_t>(2 * m_columns.pairs())) {
    // The taps of the padding read beyond the row's end; zeros lie there.
    const std::size_t padded = (m_sourceWidth + 1) / 2 * 2 + static_cast<std::size_t>(m_rows.stride());
    const std::size_t size = 4 * padded * sizeof(std::int16_t);
    m_between.reset(static_cast<std::int16_t*>(::operator new(size, alignment)));
    std::memset(m_between.get(), 0, size);
}

int RowResampler::rowsNeeded(int y) const {
    return std::min(m_columns.start(y) + 2 * m_columns.pairs(), m_sourceHeight);
}

template <typename RowAt>
void RowResampler::make(int y, const RowAt& rowAt, std::uint8_t* out) {
    for (int i = 0; i < 2 * m_columns.pairs(); ++i)
        m_taps[static_cast<std::size_t>(i)] = rowAt(std::min(m_columns.start(y) + i, m_sourceHeight - 1));
    const resampler::RowTaps taps{m_taps.data(), m_columns.weights(y), m_columns.pairs(), m_sourceWidth};
    resampler::dispatch(taps, m_between.get(), m_rows, m_targetWidth, out);
}

void RowResampler::resample(const QImage& source, QImage& target) {
    for (int y = 0; y < m_targetHeight; ++y)
        make(
            y, [&](int row) { return source.constScanLine(row); }, target.scanLine(y));
}

StreamResampler::StreamResampler(const AxisMapping& x, const AxisMapping& y)
    : m_rows(x, y), m_targetHeight(y.targetLength) {
    // A result is taken as soon as the rows that it needs have come. Rows that later results need are kept.
    int come = 0;
    std::vector<int> comeBefore;
    for (int target = 0; target < m_targetHeight; ++target) {
        come = std::max(come, m_rows.rowsNeeded(target));
        comeBefore.push_back(come);
    }
    int kept = y.sourceLength;
    for (int target = m_targetHeight - 1; target >= 0; --target) {
        kept = std::min(kept, m_rows.firstRow(target));
        m_capacity = std::max(m_capacity, comeBefore[static_cast<std::size_t>(target)] - kept);
    }
    // An odd number of cache lines a row: the samples of a column then use different parts of a cache.
    constexpr std::size_t line = 64;
    const std::size_t lines = (4 * static_cast<std::size_t>(x.sourceLength) + line - 1) / line;
    m_rowBytes = (lines | 1) * line;
    m_ring.resize(static_cast<std::size_t>(m_capacity) * m_rowBytes);
}

std::uint8_t* StreamResampler::row(int y) {
    return m_ring.data() + static_cast<std::size_t>(y % m_capacity) * m_rowBytes;
}

bool StreamResampler::hasResult() const {
    return m_made < m_targetHeight && m_come >= m_rows.rowsNeeded(m_made);
}

void StreamResampler::takeResult(std::uint8_t* out) {
    m_rows.make(
        m_made++, [this](int y) { return row(y); }, out);
}

Result<QImage> resampled(const QImage& source, const AxisMapping& x, const AxisMapping& y) {
    if (x.isIdentity() && y.isIdentity())
        return source;
    Result<QImage> target =
        newRaster(QSize(x.targetLength, y.targetLength), QImage::Format_RGBA8888_Premultiplied);
    if (!target)
        return target;
    const Result<Done> made = unlessMemoryIsShort([&] { RowResampler(x, y).resample(source, *target); });
    if (!made)
        return noMemoryForPixels(x.targetLength, y.targetLength);
    return target;
}

Result<QImage> stretched(const QImage& source, const QSize& size) {
    return resampled(source, fillingMapping(source.width(), size.width()),
                     fillingMapping(source.height(), size.height()));
}

#endif

#include "platform/Resampler.h"

#include "platform/ResamplerWeights.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <vector>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/Resampler.cpp"
#include <hwy/foreach_target.h>
// after foreach_target
#include <hwy/aligned_allocator.h>
#include <hwy/highway.h>

// The arithmetic is in whole numbers throughout: sums don't depend on their order, so that every processor
// gives the same bytes and a mirrored picture mirrored ones.
//
// Source samples have 8 bits, weights 14 fractional bits. Between the two passes a sample keeps 6 fractional
// bits in 16 bits, which leaves room for overshoot up to twice the range.

HWY_BEFORE_NAMESPACE();
namespace resampler::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

constexpr int betweenBits = 6;
constexpr int columnShift = ResamplerWeights::fractionBits - betweenBits;
constexpr int rowShift = ResamplerWeights::fractionBits + betweenBits;

#if HWY_TARGET == HWY_SCALAR

// The same in plain C++, for processors and compilers without anything better.

void filterColumns(const std::uint8_t* const* rows, const std::int16_t* weights, int pairs, std::size_t count,
                   std::int16_t* out) {
    for (std::size_t i = 0; i < count; ++i) {
        std::int32_t sum = 1 << (columnShift - 1);
        for (int tap = 0; tap < 2 * pairs; ++tap)
            sum += weights[tap] * rows[tap][i];
        out[i] = static_cast<std::int16_t>(std::clamp(sum >> columnShift, -32768, 32767));
    }
}

void pairUpPixels(std::int16_t* row, std::size_t pixelPairs) {
    for (std::int16_t* pair = row; pair != row + 8 * pixelPairs; pair += 8) {
        const std::int16_t paired[8] = {pair[0], pair[4], pair[1], pair[5],
                                        pair[2], pair[6], pair[3], pair[7]};
        std::memcpy(pair, paired, sizeof paired);
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

/// One row between the passes: `count` samples of the column filter over `pairs` pairs of rows. `rows` holds
/// two pointers a pair.
void filterColumns(const std::uint8_t* const* rows, const std::int16_t* weights, int pairs, std::size_t count,
                   std::int16_t* out) {
    const hn::ScalableTag<std::int32_t> d32;
    const hn::Rebind<std::uint8_t, decltype(d32)> d8;
    const hn::Repartition<std::int16_t, decltype(d32)> d16;
    const hn::Rebind<std::int16_t, decltype(d32)> dHalf16;
    const std::size_t lanes = hn::Lanes(d32);
    const auto round = hn::Set(d32, 1 << (columnShift - 1));

    const auto sum = [&](std::size_t i, auto load) HWY_ATTR {
        auto sum0 = hn::Zero(d32);
        auto sum1 = hn::Zero(d32);
        for (int pair = 0; pair < pairs; ++pair) {
            const auto a = hn::PromoteTo(d32, load(rows[2 * pair] + i));
            const auto b = hn::PromoteTo(d32, load(rows[2 * pair + 1] + i));
            const auto samples = hn::BitCast(d16, hn::Or(a, hn::ShiftLeft<16>(b)));
            std::int32_t both = 0;
            std::memcpy(&both, weights + 2 * pair, sizeof both);
            const auto factors = hn::BitCast(d16, hn::Set(d32, both));
            sum0 = hn::ReorderWidenMulAccumulate(d32, samples, factors, sum0, sum1);
        }
        return hn::ShiftRight<columnShift>(hn::Add(hn::RearrangeToOddPlusEven(sum0, sum1), round));
    };

    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        hn::StoreU(
            hn::DemoteTo(dHalf16, sum(i, [&](const std::uint8_t* p) HWY_ATTR { return hn::LoadU(d8, p); })),
            dHalf16, out + i);
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
    hn::Store(hn::DemoteTo(dHalf16, sum(i, loadRest)), dHalf16, results);
    std::memcpy(out + i, results, rest * sizeof *out);
}

/// Puts the samples of each two neighbouring pixels side by side: r0 g0 b0 a0 r1 g1 b1 a1 becomes
/// r0 r1 g0 g1 b0 b1 a0 a1, so that one multiplication takes a pair of taps.
void pairUpPixels(std::int16_t* row, std::size_t pixelPairs) {
    const hn::FixedTag<std::int16_t, 8> d;
    const hn::Half<decltype(d)> half;
    for (std::size_t i = 0; i < pixelPairs; ++i) {
        const auto pixels = hn::Load(d, row + 8 * i);
        const auto first = hn::LowerHalf(half, pixels);
        const auto second = hn::UpperHalf(half, pixels);
        hn::StoreInterleaved2(first, second, half, row + 8 * i);
    }
}

/// One row of pixels from a row between the passes. Samples are clamped to what a premultiplied pixel may
/// hold.
void filterRow(const std::int16_t* row, const ResamplerWeights& weights, int count, std::uint8_t* out) {
    const hn::FixedTag<std::int16_t, 8> d16;
    const hn::FixedTag<std::int32_t, 4> d32;
    const hn::FixedTag<std::uint8_t, 4> d8;
    const auto round = hn::Set(d32, 1 << (rowShift - 1));
    for (int x = 0; x < count; ++x) {
        const std::int16_t* taps = row + 4 * static_cast<std::ptrdiff_t>(weights.start(x));
        const std::int16_t* factors = weights.weights(x);
        auto sum0 = hn::Zero(d32);
        auto sum1 = hn::Zero(d32);
        for (int pair = 0; pair < weights.pairs(); ++pair) {
            std::int32_t both = 0;
            std::memcpy(&both, factors + 2 * pair, sizeof both);
            sum0 = hn::ReorderWidenMulAccumulate(d32, hn::Load(d16, taps + 8 * pair),
                                                 hn::BitCast(d16, hn::Set(d32, both)), sum0, sum1);
        }
        const auto pixel = hn::ShiftRight<rowShift>(hn::Add(hn::RearrangeToOddPlusEven(sum0, sum1), round));
        const auto inRange = hn::Min(pixel, hn::Broadcast<3>(pixel));
        hn::StoreU(hn::DemoteTo(d8, inRange), d8, out + 4 * static_cast<std::ptrdiff_t>(x));
    }
}

#endif

void resample(const QImage& source, const ResamplerWeights& columns, const ResamplerWeights& rows,
              QImage& target) {
    const auto width = static_cast<std::size_t>(source.width());
    // Taps that the padding adds read beyond the row's end: they read zeros.
    const std::size_t padded = (width + 1) / 2 * 2 + 2 * static_cast<std::size_t>(rows.pairs());
    hwy::AlignedFreeUniquePtr<std::int16_t[]> between = hwy::AllocateAligned<std::int16_t>(4 * padded);
    if (!between)
        throw std::bad_alloc();
    std::memset(between.get(), 0, 4 * padded * sizeof(std::int16_t));
    std::vector<const std::uint8_t*> taps(static_cast<std::size_t>(2 * columns.pairs()));
    for (int y = 0; y < target.height(); ++y) {
        for (int i = 0; i < 2 * columns.pairs(); ++i)
            taps[static_cast<std::size_t>(i)] =
                source.constScanLine(std::min(columns.start(y) + i, source.height() - 1));
        filterColumns(taps.data(), columns.weights(y), columns.pairs(), 4 * width, between.get());
        if (width % 2 == 1)
            std::memset(between.get() + 4 * width, 0, 4 * sizeof(std::int16_t));
        pairUpPixels(between.get(), (width + 1) / 2);
        filterRow(between.get(), rows, target.width(), target.scanLine(y));
    }
}

} // namespace resampler::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace resampler {
namespace {

HWY_EXPORT(resample);

void dispatch(const QImage& source, const ResamplerWeights& columns, const ResamplerWeights& rows,
              QImage& target) {
    HWY_DYNAMIC_DISPATCH(resample)(source, columns, rows, target);
}

} // namespace
} // namespace resampler

QImage resampled(const QImage& source, const AxisMapping& x, const AxisMapping& y) {
    if (x.isIdentity() && y.isIdentity())
        return source.copy();
    QImage target(x.targetLength, y.targetLength, QImage::Format_RGBA8888_Premultiplied);
    if (target.isNull())
        return target;
    try {
        const ResamplerWeights columns(y, false);
        const ResamplerWeights rows(x, true);
        resampler::dispatch(source, columns, rows, target);
    } catch (const std::bad_alloc&) {
        return {};
    }
    return target;
}

QImage stretched(const QImage& source, const QSize& size) {
    const auto fill = [](int from, int to) { return AxisMapping{from, 0, static_cast<double>(to), to}; };
    return resampled(source, fill(source.width(), size.width()), fill(source.height(), size.height()));
}

#endif

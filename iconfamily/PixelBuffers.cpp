// Compiled once for each instruction set; the best one is chosen when the program runs.
#include "iconfamily/PixelBuffers.h"

#include <algorithm>
#include <cstdint>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "iconfamily/PixelBuffers.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace pixelbuffers::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;
using PixelBuffers::Map;

void permute(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels, const Map& map) {
    std::size_t done = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<std::uint8_t> bytes;
    const std::size_t step = hn::Lanes(bytes) / 4;
    // Within blocks of 16 bytes, which is as far as a table reaches.
    HWY_ALIGN std::uint8_t indices[16];
    for (std::size_t i = 0; i < sizeof indices; ++i)
        indices[i] = static_cast<std::uint8_t>(i - i % 4 + map[i % 4]);
    const auto table = hn::LoadDup128(bytes, indices);
    for (; done + step <= pixels; done += step)
        hn::StoreU(hn::TableLookupBytes(hn::LoadU(bytes, in + 4 * done), table), bytes, out + 4 * done);
#endif
    for (; done < pixels; ++done) {
        const std::uint8_t* from = in + 4 * done;
        const Map pixel{from[map[0]], from[map[1]], from[map[2]], from[map[3]]};
        std::ranges::copy(pixel, out + 4 * done);
    }
}

void expandRgb(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    std::size_t done = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<std::uint8_t> bytes;
    const std::size_t step = hn::Lanes(bytes);
    for (; done + step <= pixels; done += step) {
        auto red = hn::Zero(bytes);
        auto green = red;
        auto blue = red;
        hn::LoadInterleaved3(bytes, in + 3 * done, red, green, blue);
        hn::StoreInterleaved4(hn::Set(bytes, 255), red, green, blue, bytes, out + 4 * done);
    }
#endif
    for (; done < pixels; ++done) {
        out[4 * done] = 255;
        std::copy_n(in + 3 * done, 3, out + 4 * done + 1);
    }
}

void unpremultiplyArgb(std::uint8_t* pixelBytes, std::size_t pixels) {
    std::size_t done = 0;
#if HWY_TARGET != HWY_SCALAR
    const hn::ScalableTag<std::uint32_t> words;
    const hn::RebindToSigned<decltype(words)> integers;
    const hn::RebindToFloat<decltype(words)> floats;
    const hn::Repartition<std::uint8_t, decltype(words)> bytes;
    const std::size_t step = hn::Lanes(words);
    const auto low = hn::Set(words, 255);
    for (; done + step <= pixels; done += step) {
        // A is the lowest byte of a word.
        const auto pixel = hn::BitCast(words, hn::LoadU(bytes, pixelBytes + 4 * done));
        const auto alpha = hn::And(pixel, low);
        const auto half = hn::ShiftRight<1>(alpha);
        const auto divisor = hn::ConvertTo(floats, hn::BitCast(integers, alpha));
        // The quotient's distance to the next whole number is at least 1 ÷ a, and its rounding error less.
        const auto divided = [&](auto color) HWY_ATTR {
            const auto dividend = hn::Add(hn::Sub(hn::ShiftLeft<8>(color), color), half);
            const auto quotient = hn::Div(hn::ConvertTo(floats, hn::BitCast(integers, dividend)), divisor);
            return hn::Min(hn::BitCast(words, hn::ConvertTo(integers, quotient)), low);
        };
        const auto first = divided(hn::And(hn::ShiftRight<8>(pixel), low));
        const auto second = divided(hn::And(hn::ShiftRight<16>(pixel), low));
        const auto third = divided(hn::ShiftRight<24>(pixel));
        const auto result = hn::Or(hn::Or(alpha, hn::ShiftLeft<8>(first)),
                                   hn::Or(hn::ShiftLeft<16>(second), hn::ShiftLeft<24>(third)));
        const auto isClear = hn::Eq(alpha, hn::Zero(words));
        hn::StoreU(hn::BitCast(bytes, hn::IfThenZeroElse(isClear, result)), bytes, pixelBytes + 4 * done);
    }
#endif
    for (; done < pixels; ++done) {
        std::uint8_t* pixel = pixelBytes + 4 * done;
        const unsigned a = pixel[0];
        for (int c = 1; c < 4; ++c)
            pixel[c] = a == 0 ? std::uint8_t{0}
                              : static_cast<std::uint8_t>(std::min(255U, (pixel[c] * 255U + a / 2) / a));
    }
}

} // namespace pixelbuffers::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace pixelbuffers {

HWY_EXPORT(permute);
HWY_EXPORT(expandRgb);
HWY_EXPORT(unpremultiplyArgb);

} // namespace pixelbuffers

void PixelBuffers::permute(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels, const Map& map) {
    using namespace pixelbuffers;
    HWY_DYNAMIC_DISPATCH(permute)(in, out, pixels, map);
}

void PixelBuffers::expandRgb(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    using namespace pixelbuffers;
    HWY_DYNAMIC_DISPATCH(expandRgb)(in, out, pixels);
}

void PixelBuffers::unpremultiplyArgb(std::uint8_t* pixelBytes, std::size_t pixels) {
    using namespace pixelbuffers;
    HWY_DYNAMIC_DISPATCH(unpremultiplyArgb)(pixelBytes, pixels);
}

#endif

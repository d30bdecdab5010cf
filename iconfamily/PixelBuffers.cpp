// Compiled once for each instruction set; the best one is chosen when the program runs.
#include "iconfamily/PixelBuffers.h"

#include "imaging/simd/VectorDispatch.h"

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
    // TableLookupBytes looks up bytes only within blocks of 16 bytes.
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

} // namespace pixelbuffers::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace pixelbuffers {

VECTOR_EXPORT(permute);
VECTOR_EXPORT(expandRgb);

} // namespace pixelbuffers

void PixelBuffers::permute(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels, const Map& map) {
    using namespace pixelbuffers;
    VECTOR_DISPATCH(permute)(in, out, pixels, map);
}

void PixelBuffers::expandRgb(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    using namespace pixelbuffers;
    VECTOR_DISPATCH(expandRgb)(in, out, pixels);
}

#endif

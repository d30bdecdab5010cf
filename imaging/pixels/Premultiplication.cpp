// Compiled once for each instruction set; the best one is chosen when the program runs.
#include "imaging/pixels/Premultiplication.h"

#include "imaging/pixels/Raster.h"
#include "imaging/simd/VectorDispatch.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "imaging/pixels/Premultiplication.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace premultiplication::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET != HWY_SCALAR

using Bytes = hn::ScalableTag<std::uint8_t>;
using Halves = hn::Repartition<std::uint16_t, Bytes>;
using Words = hn::Repartition<std::uint32_t, Bytes>;
using Integers = hn::Repartition<std::int32_t, Bytes>;
using Floats = hn::Repartition<float, Bytes>;
using Pixels = hn::Vec<Words>; ///< R, or A of ARGB, is a word's lowest byte

/// Applies `change` to the pixels of each full vector. Returns how many pixels it changed.
template <class Change>
HWY_INLINE std::size_t eachVector(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels,
                                  Change change) {
    const std::size_t step = hn::Lanes(Words());
    std::size_t done = 0;
    for (; done + step <= pixels; done += step) {
        const Pixels changed = change(hn::BitCast(Words(), hn::LoadU(Bytes(), in + 4 * done)));
        hn::StoreU(hn::BitCast(Bytes(), changed), Bytes(), out + 4 * done);
    }
    return done;
}

/// (a × b) ÷ 255, rounded. A word holds two samples, and each has 16 bits for its product.
template <class V>
HWY_INLINE V multiplied(V a, V b) {
    const auto product = hn::Mul(hn::BitCast(Halves(), a), hn::BitCast(Halves(), b));
    const auto sum = hn::Add(product, hn::Set(Halves(), 128));
    return hn::BitCast(Words(), hn::ShiftRight<8>(hn::Add(sum, hn::ShiftRight<8>(sum))));
}

HWY_INLINE Pixels premultiplied(Pixels pixel) {
    const Pixels alpha = hn::ShiftRight<24>(pixel);
    const Pixels everySecond = hn::Set(Words(), 0x00ff00ff);
    const Pixels redBlue = multiplied(hn::And(pixel, everySecond), hn::Or(alpha, hn::ShiftLeft<16>(alpha)));
    // Alpha itself is multiplied by 255 ÷ 255.
    const Pixels greenAlpha = multiplied(hn::And(hn::ShiftRight<8>(pixel), everySecond),
                                         hn::Or(alpha, hn::Set(Words(), 255U << 16)));
    return hn::Or(redBlue, hn::ShiftLeft<8>(greenAlpha));
}

/// The sample at byte `Index` of each pixel.
template <int Index>
HWY_INLINE Pixels sample(Pixels pixel) {
    return hn::And(hn::ShiftRight<8 * Index>(pixel), hn::Set(Words(), 255));
}

template <int Alpha>
HWY_INLINE Pixels unpremultiplied(Pixels pixel) {
    const Pixels alpha = sample<Alpha>(pixel);
    const Pixels full = hn::Set(Words(), 255);
    // Most pixels are opaque or empty; these do not change.
    if (hn::AllTrue(Words(), hn::Or(hn::Eq(alpha, full), hn::Eq(pixel, hn::Zero(Words())))))
        return pixel;
    const Pixels half = hn::ShiftRight<1>(alpha);
    const auto divisor = hn::ConvertTo(Floats(), hn::BitCast(Integers(), alpha));
    // The added half keeps the quotient at least 1 ÷ 2a from the whole numbers around it. No rounding error
    // reaches that far, not even that of an approximate division.
    const auto divided = [&](Pixels color) HWY_ATTR {
        const Pixels dividend = hn::Add(hn::Sub(hn::ShiftLeft<8>(color), color), half);
        const auto exact = hn::ConvertTo(Floats(), hn::BitCast(Integers(), dividend));
        const auto quotient = hn::Div(hn::Add(exact, hn::Set(Floats(), 0.5F)), divisor);
        return hn::Min(hn::BitCast(Words(), hn::ConvertTo(Integers(), quotient)), full);
    };
    constexpr int first = Alpha == 0 ? 1 : 0;
    const Pixels colors = hn::Or(hn::Or(hn::ShiftLeft<8 * first>(divided(sample<first>(pixel))),
                                        hn::ShiftLeft<8 * first + 8>(divided(sample<first + 1>(pixel)))),
                                 hn::ShiftLeft<8 * first + 16>(divided(sample<first + 2>(pixel))));
    const auto isClear = hn::Eq(alpha, hn::Zero(Words()));
    return hn::IfThenZeroElse(isClear, hn::Or(colors, hn::ShiftLeft<8 * Alpha>(alpha)));
}

HWY_INLINE Pixels clamped(Pixels pixel) {
    HWY_ALIGN static constexpr std::uint8_t alphas[16] = {3,  3,  3,  3,  7,  7,  7,  7,
                                                          11, 11, 11, 11, 15, 15, 15, 15};
    const auto bytes = hn::BitCast(Bytes(), pixel);
    const auto alpha = hn::TableLookupBytes(bytes, hn::LoadDup128(Bytes(), alphas));
    return hn::BitCast(Words(), hn::Min(bytes, alpha));
}

#endif

void premultiply(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    std::size_t done = 0;
#if HWY_TARGET != HWY_SCALAR
    done = eachVector(in, out, pixels, premultiplied);
#endif
    for (; done < pixels; ++done) {
        const std::uint8_t* from = in + 4 * done;
        const unsigned a = from[3];
        for (std::size_t c = 0; c < 3; ++c) {
            const unsigned product = from[c] * a + 128;
            out[4 * done + c] = static_cast<std::uint8_t>((product + (product >> 8)) >> 8);
        }
        out[4 * done + 3] = static_cast<std::uint8_t>(a);
    }
}

/// `Alpha` is the index of alpha among a pixel's bytes.
template <int Alpha>
void unpremultiplyWith(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    std::size_t done = 0;
#if HWY_TARGET != HWY_SCALAR
    done = eachVector(in, out, pixels, unpremultiplied<Alpha>);
#endif
    for (; done < pixels; ++done) {
        const std::uint8_t* from = in + 4 * done;
        const unsigned a = from[Alpha];
        for (std::size_t i = 0; i < 4; ++i) {
            const unsigned color = a == 0 ? 0 : std::min(255U, (from[i] * 255U + a / 2) / a);
            out[4 * done + i] = static_cast<std::uint8_t>(i == Alpha ? a : color);
        }
    }
}

void unpremultiply(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    unpremultiplyWith<3>(in, out, pixels);
}

void unpremultiplyArgb(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    unpremultiplyWith<0>(in, out, pixels);
}

void clampToAlpha(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    std::size_t done = 0;
#if HWY_TARGET != HWY_SCALAR
    done = eachVector(in, out, pixels, clamped);
#endif
    for (; done < pixels; ++done) {
        const std::uint8_t* from = in + 4 * done;
        const std::uint8_t a = from[3];
        for (std::size_t c = 0; c < 3; ++c)
            out[4 * done + c] = std::min(from[c], a);
        out[4 * done + 3] = a;
    }
}

bool isClampedToAlpha(const std::uint8_t* in, std::size_t pixels) {
    std::size_t done = 0;
#if HWY_TARGET != HWY_SCALAR
    const std::size_t step = hn::Lanes(Words());
    for (; done + step <= pixels; done += step) {
        const Pixels pixel = hn::BitCast(Words(), hn::LoadU(Bytes(), in + 4 * done));
        if (!hn::AllTrue(Words(), hn::Eq(pixel, clamped(pixel))))
            return false;
    }
#endif
    for (; done < pixels; ++done) {
        const std::uint8_t* pixel = in + 4 * done;
        if (std::max({pixel[0], pixel[1], pixel[2]}) > pixel[3])
            return false;
    }
    return true;
}

} // namespace premultiplication::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace premultiplication {

VECTOR_EXPORT(premultiply);
VECTOR_EXPORT(unpremultiply);
VECTOR_EXPORT(unpremultiplyArgb);
VECTOR_EXPORT(clampToAlpha);
VECTOR_EXPORT(isClampedToAlpha);

} // namespace premultiplication

void premultiply(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    using namespace premultiplication;
    VECTOR_DISPATCH(premultiply)(in, out, pixels);
}

void unpremultiply(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    using namespace premultiplication;
    VECTOR_DISPATCH(unpremultiply)(in, out, pixels);
}

void unpremultiplyArgb(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    using namespace premultiplication;
    VECTOR_DISPATCH(unpremultiplyArgb)(in, out, pixels);
}

void clampToAlpha(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    using namespace premultiplication;
    VECTOR_DISPATCH(clampToAlpha)(in, out, pixels);
}

bool isClampedToAlpha(const std::uint8_t* in, std::size_t pixels) {
    using namespace premultiplication;
    return VECTOR_DISPATCH(isClampedToAlpha)(in, pixels);
}

Result<QImage> straightRaster(const QImage& raster) {
    if (raster.format() == QImage::Format_RGBA8888)
        return raster;
    Result<QImage> straight = newRaster(raster.size(), QImage::Format_RGBA8888);
    if (!straight)
        return straight;
    for (int y = 0; y < raster.height(); ++y)
        unpremultiply(raster.constScanLine(y), straight->scanLine(y),
                      static_cast<std::size_t>(raster.width()));
    return straight;
}

#endif

#include "imaging/pixels/RowConverter.h"

#include "base/LongWork.h"
#include "base/ShortMemory.h"
#include "imaging/pixels/Premultiplication.h"

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

using Alpha = SampleLayout::Alpha;
using Colors = SampleLayout::Colors;

std::uint8_t toByte(std::uint16_t sample) {
    return static_cast<std::uint8_t>((static_cast<unsigned>(sample) * 255 + 32767) / 65535);
}

/// The byte of a premultiplied 16-bit sample: c × a, both 16 bits, rounded once.
std::uint8_t multipliedToByte(std::uint16_t c, std::uint16_t a) {
    const std::uint64_t scale = 65535ULL * 65535ULL;
    return static_cast<std::uint8_t>((static_cast<std::uint64_t>(c) * a * 255 + scale / 2) / scale);
}

void premultiply(const std::uint16_t* in, std::uint8_t* out, std::size_t pixels) {
    for (std::size_t i = 0; i < 4 * pixels; i += 4) {
        const std::uint16_t a = in[i + 3];
        for (std::size_t channel = 0; channel < 3; ++channel)
            out[i + channel] = a == 65535 ? toByte(in[i + channel]) : multipliedToByte(in[i + channel], a);
        out[i + 3] = toByte(a);
    }
}

/// Turns grey, RGB or CMYK pixels of the layout into RGBA without a profile.
template <typename Sample>
void expand(const SampleLayout& layout, const Sample* in, Sample* out, std::size_t pixels) {
    constexpr unsigned maximum = std::numeric_limits<Sample>::max();
    const auto step = static_cast<std::size_t>(layout.samplesPerPixel());
    const auto colors = static_cast<std::size_t>(layout.colorCount());
    for (std::size_t i = 0; i < pixels; ++i, in += step, out += 4) {
        const Sample alpha = layout.alpha == Alpha::None ? static_cast<Sample>(maximum) : in[colors];
        if (layout.colors == Colors::CMYK) {
            const auto paper = [&](std::size_t n) -> std::uint64_t {
                return layout.inverted ? in[n] : maximum - in[n];
            };
            const std::uint64_t key = paper(3);
            for (std::size_t n = 0; n < 3; ++n)
                out[n] = static_cast<Sample>((paper(n) * key + maximum / 2) / maximum);
        } else {
            const bool isNegative = layout.inverted && layout.colors == Colors::Grey;
            const auto first = isNegative ? static_cast<Sample>(maximum - in[0]) : in[0];
            out[1] = layout.colors == Colors::Grey ? first : in[1];
            out[2] = layout.colors == Colors::Grey ? first : in[2];
            out[0] = first;
        }
        out[3] = alpha;
    }
}

/// Turns premultiplied colours into straight ones, in the layout's own order.
template <typename Sample>
void unpremultiply(const SampleLayout& layout, const Sample* in, Sample* out, std::size_t pixels) {
    constexpr std::uint64_t maximum = std::numeric_limits<Sample>::max();
    const auto colors = static_cast<std::size_t>(layout.colorCount());
    for (std::size_t i = 0; i < pixels; ++i, in += colors + 1, out += colors + 1) {
        const std::uint64_t alpha = in[colors];
        for (std::size_t n = 0; n < colors; ++n)
            out[n] = alpha == 0
                         ? Sample{0}
                         : static_cast<Sample>(std::min(maximum, (in[n] * maximum + alpha / 2) / alpha));
        out[colors] = static_cast<Sample>(alpha);
    }
}

/// Lowers each premultiplied colour that exceeds its alpha to the alpha. Decoders do not check their samples.
void clampToAlpha(const std::uint16_t* in, std::uint8_t* out, std::size_t pixels) {
    for (std::size_t i = 0; i < 4 * pixels; i += 4) {
        const std::uint8_t a = toByte(in[i + 3]);
        for (std::size_t n = 0; n < 3; ++n)
            out[i + n] = std::min(toByte(in[i + n]), a);
        out[i + 3] = a;
    }
}

cmsUInt32Number inputFormat(const SampleLayout& layout) {
    const int space = layout.colors == Colors::Grey  ? PT_GRAY
                      : layout.colors == Colors::RGB ? PT_RGB
                                                     : PT_CMYK;
    return static_cast<cmsUInt32Number>(
        COLORSPACE_SH(space) | CHANNELS_SH(layout.colorCount()) | BYTES_SH(layout.bitsPerSample / 8) |
        EXTRA_SH(layout.alpha == Alpha::None ? 0 : 1) | FLAVOR_SH(layout.inverted ? 1 : 0));
}

} // namespace

Result<RowConverter> RowConverter::create(const SampleLayout& layout, const ColorProfile& profile,
                                          int longestRow) {
    return unlessMemoryIsShort([&]() -> Result<RowConverter> {
        RowConverter converter(layout);
        if (profile) {
            if (const Result<Done> made = converter.makeTransform(profile); !made)
                return made.error();
        }
        const auto pixels = static_cast<std::size_t>(longestRow);
        if (!converter.isDirect())
            converter.m_straight.resize(4 * pixels);
        if (!converter.isDirect() && layout.alpha == Alpha::Premultiplied)
            converter.m_unpremultiplied.resize(5 * pixels);
        return converter;
    });
}

Result<Done> RowConverter::makeTransform(const ColorProfile& profile) {
    using Space = ColorProfile::Space;
    const Space wanted = m_layout.colors == Colors::Grey  ? Space::Grey
                         : m_layout.colors == Colors::RGB ? Space::RGB
                                                          : Space::CMYK;
    if (profile.space() == wanted) {
        const auto output = static_cast<cmsUInt32Number>(COLORSPACE_SH(PT_RGB) | CHANNELS_SH(3) |
                                                         EXTRA_SH(1) | BYTES_SH(m_layout.bitsPerSample / 8));
        const cmsUInt32Number flags = m_layout.alpha == Alpha::None ? 0 : cmsFLAGS_COPY_ALPHA;
        const RefusedMemory memory;
        const std::unique_ptr<void, cmsBool (*)(cmsHPROFILE)> srgb(cmsCreate_sRGBProfile(), cmsCloseProfile);
        cmsHTRANSFORM transform = srgb ? cmsCreateTransform(profile.handle(), inputFormat(m_layout),
                                                            srgb.get(), output, INTENT_PERCEPTUAL, flags)
                                       : nullptr;
        if (transform == nullptr && memory.wasSeen())
            return outOfMemory();
        if (transform != nullptr)
            m_transform = std::shared_ptr<void>(transform, [](void* t) { cmsDeleteTransform(t); });
    }
    if (!m_transform)
        m_profileWasRefused = true;
    else if (m_layout.colors != Colors::CMYK && transformIsIdentity())
        m_transform.reset();
    return Done{};
}

bool RowConverter::isDirect() const {
    return !m_transform && m_layout.colors == Colors::RGB && m_layout.alpha != Alpha::None;
}

/// Whether the transform moves no colour of a probe grid by more than one step of 8 bits.
bool RowConverter::transformIsIdentity() const {
    constexpr unsigned steps = 17;
    const bool isGrey = m_layout.colors == Colors::Grey;
    const bool isWide = m_layout.bitsPerSample == 16;
    const auto count = static_cast<std::size_t>(m_layout.samplesPerPixel());
    for (unsigned i = 0; i < (isGrey ? 256 : steps * steps * steps); ++i) {
        const std::array<unsigned, 3> probe =
            isGrey ? std::array<unsigned, 3>{i, i, i}
                   : std::array<unsigned, 3>{i / (steps * steps) * 255 / (steps - 1),
                                             i / steps % steps * 255 / (steps - 1),
                                             i % steps * 255 / (steps - 1)};
        std::array<std::uint16_t, 4> wideIn{};
        std::array<std::uint16_t, 4> wideOut{};
        std::array<std::uint8_t, 4> in{};
        std::array<std::uint8_t, 4> out{};
        for (std::size_t n = 0; n < std::min<std::size_t>(count, isGrey ? 1 : 3); ++n) {
            in[n] = static_cast<std::uint8_t>(probe[n]);
            wideIn[n] = static_cast<std::uint16_t>(probe[n] * 257);
        }
        if (isWide)
            cmsDoTransform(m_transform.get(), wideIn.data(), wideOut.data(), 1);
        else
            cmsDoTransform(m_transform.get(), in.data(), out.data(), 1);
        for (std::size_t n = 0; n < 3; ++n) {
            const int result = isWide ? toByte(wideOut[n]) : out[n];
            if (std::abs(result - static_cast<int>(probe[n])) > 1)
                return false;
        }
    }
    return true;
}

template <typename Sample>
void RowConverter::convertSamples(const Sample* in, std::uint8_t* out, std::size_t pixels) {
    const bool isPremultiplied = m_layout.alpha == Alpha::Premultiplied;
    if (isDirect()) {
        if (m_layout.alpha == Alpha::Full && sizeof(Sample) == 1 && static_cast<const void*>(in) == out)
            return; // the samples are the raster's bytes already
        if (isPremultiplied)
            clampToAlpha(in, out, pixels);
        else
            premultiply(in, out, pixels);
        return;
    }
    auto* straight = reinterpret_cast<Sample*>(m_straight.data());
    if (isPremultiplied) {
        auto* unpremultiplied = reinterpret_cast<Sample*>(m_unpremultiplied.data());
        unpremultiply(m_layout, in, unpremultiplied, pixels);
        in = unpremultiplied;
    }
    if (m_transform) {
        if (m_layout.alpha == Alpha::None)
            std::fill_n(straight, 4 * pixels, std::numeric_limits<Sample>::max());
        cmsDoTransform(m_transform.get(), in, straight, static_cast<cmsUInt32Number>(pixels));
    } else {
        expand(m_layout, in, straight, pixels);
    }
    premultiply(straight, out, pixels);
}

void RowConverter::convert(const std::uint8_t* in, std::uint8_t* out, int pixels) {
    LongWork::step();
    const auto count = static_cast<std::size_t>(pixels);
    if (m_layout.bitsPerSample == 16)
        convertSamples(reinterpret_cast<const std::uint16_t*>(in), out, count);
    else
        convertSamples(in, out, count);
}

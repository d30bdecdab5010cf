#pragma once

#include "imaging/pixels/ColorProfile.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// How a decoder hands over its rows: samples of one pixel side by side, alpha last, 16-bit samples in the
/// processor's byte order.
struct SampleLayout {
    enum class Colors { Grey, RGB, CMYK };
    enum class Alpha {
        None,
        Straight,
        Premultiplied,
        Full, ///< a sample that always has its highest value
    };

    Colors colors = Colors::RGB;
    Alpha alpha = Alpha::None;
    int bitsPerSample = 8; ///< 8 or 16
    bool inverted = false; ///< CMYK where 0 is full ink; grey where 0 is white

    int colorCount() const { return colors == Colors::Grey ? 1 : colors == Colors::RGB ? 3 : 4; }
    int samplesPerPixel() const { return colorCount() + (alpha == Alpha::None ? 0 : 1); }
    int bytesPerPixel() const { return samplesPerPixel() * bitsPerSample / 8; }
};

/// Turns rows of decoded samples into rows of a raster: RGBA, 8 bits, premultiplied, sRGB. Colours go through
/// the picture's profile (perceptual intent). A profile that moves no colour by more than one step is not
/// applied, so an sRGB picture keeps its bytes.
class RowConverter {
  public:
    /// A converter of rows of up to `longestRow` pixels. `profile` may be empty. A profile that does not suit
    /// the layout's colours is not used, and `profileWasRefused` says so. OutOfMemory is the only error.
    static Result<RowConverter> create(const SampleLayout& layout, const ColorProfile& profile,
                                       int longestRow);

    bool profileWasRefused() const { return m_profileWasRefused; }

    /// Converts `pixels` pixels from `in` (layout.bytesPerPixel() each) to `out` (4 bytes each). `in` and
    /// `out` may be the same memory where a pixel of both has 4 bytes.
    void convert(const std::uint8_t* in, std::uint8_t* out, int pixels);

  private:
    explicit RowConverter(const SampleLayout& layout) : m_layout(layout) {}

    template <typename Sample>
    void convertSamples(const Sample* in, std::uint8_t* out, std::size_t pixels);
    Result<Done> makeTransform(const ColorProfile& profile);
    /// Whether the samples are RGBA already, and only need to be premultiplied or clamped.
    bool isDirect() const;
    bool transformIsIdentity() const;

    SampleLayout m_layout;
    std::shared_ptr<void> m_transform; ///< a cmsHTRANSFORM, or null
    bool m_profileWasRefused = false;
    std::vector<std::uint16_t> m_straight;
    std::vector<std::uint16_t> m_unpremultiplied;
};

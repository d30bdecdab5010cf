#include "imaging/png/PngSamples.h"

#include "imaging/png/FilteredRows.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <unordered_map>

namespace {

struct Color {
    std::uint8_t red, green, blue, alpha;

    bool isGrey() const { return red == green && green == blue; }
    bool isOpaque() const { return alpha == 255; }
    std::uint32_t key() const {
        return std::uint32_t{red} << 24 | std::uint32_t{green} << 16 | std::uint32_t{blue} << 8 | alpha;
    }
    /// Brightness, as the weights of Rec. 601 have it; in thousandths.
    int luma() const { return 299 * red + 587 * green + 114 * blue; }
};

/// The straight pixels of a raster.
class Pixels {
  public:
    explicit Pixels(const QImage& raster)
        : m_width(static_cast<std::size_t>(raster.width())),
          m_height(raster.height()),
          m_rows(FilteredRows(raster, PngChannels::Rgba).all(PngFilterStrategy::None)) {}

    std::size_t width() const { return m_width; }
    int height() const { return m_height; }

    Color at(std::size_t x, int y) const {
        const std::uint8_t* p =
            m_rows.bytes.get() + static_cast<std::size_t>(y) * (1 + 4 * m_width) + 1 + 4 * x;
        return {p[0], p[1], p[2], p[3]};
    }

    template <typename Function>
    void forEach(const Function& function) const {
        for (int y = 0; y < m_height; ++y) {
            for (std::size_t x = 0; x < m_width; ++x)
                function(at(x, y));
        }
    }

  private:
    std::size_t m_width;
    int m_height;
    FilteredRows::Buffer m_rows;
};

/// Samples without values.
PngSamples emptySamples(const Pixels& pixels, PngSamples::ColorType type, int depth) {
    PngSamples samples;
    samples.colorType = type;
    samples.bitDepth = depth;
    samples.height = pixels.height();
    const std::size_t bits = 8 * samples.pixelBytes() / static_cast<std::size_t>(8 / depth);
    samples.rowBytes = (pixels.width() * bits + 7) / 8;
    samples.bytes.resize(samples.rowBytes * static_cast<std::size_t>(samples.height));
    return samples;
}

/// Fills samples of one value a pixel, of up to 8 bits.
template <typename ValueOf>
void fill(PngSamples& samples, const Pixels& pixels, const ValueOf& valueOf) {
    const auto depth = static_cast<std::size_t>(samples.bitDepth);
    const std::size_t inByte = 8 / depth;
    std::uint8_t* row = samples.bytes.data();
    for (int y = 0; y < samples.height; ++y, row += samples.rowBytes) {
        for (std::size_t x = 0; x < pixels.width(); ++x) {
            const std::size_t shift = 8 - depth - x % inByte * depth;
            row[x / inByte] |= static_cast<std::uint8_t>(valueOf(pixels.at(x, y)) << shift);
        }
    }
}

/// The fewest bits that hold each grey level exactly.
int greyDepth(const Pixels& pixels) {
    const auto isMultiple = [&](int step) {
        bool isEach = true;
        pixels.forEach([&](const Color& color) { isEach = isEach && color.red % step == 0; });
        return isEach;
    };
    return isMultiple(255) ? 1 : isMultiple(85) ? 2 : isMultiple(17) ? 4 : 8;
}

PngSamples grey(const Pixels& pixels) {
    PngSamples samples = emptySamples(pixels, PngSamples::Grey, greyDepth(pixels));
    const int step = 255 / ((1 << samples.bitDepth) - 1);
    fill(samples, pixels, [&](const Color& color) { return static_cast<unsigned>(color.red / step); });
    return samples;
}

/// Samples of several bytes a pixel.
PngSamples direct(const Pixels& pixels, PngSamples::ColorType type) {
    PngSamples samples = emptySamples(pixels, type, 8);
    std::uint8_t* out = samples.bytes.data();
    pixels.forEach([&](const Color& color) {
        *out++ = color.red;
        if (type != PngSamples::GreyAlpha) {
            *out++ = color.green;
            *out++ = color.blue;
        }
        if (type != PngSamples::Rgb)
            *out++ = color.alpha;
    });
    return samples;
}

constexpr std::size_t mostColors = 256;

struct CountedColor {
    Color color;
    std::size_t count;
};

/// The colours in the order in which they come first; no value where there are too many.
std::optional<std::vector<CountedColor>> fewColors(const Pixels& pixels) {
    std::unordered_map<std::uint32_t, std::size_t> places;
    std::vector<CountedColor> colors;
    for (int y = 0; y < pixels.height(); ++y) {
        for (std::size_t x = 0; x < pixels.width(); ++x) {
            const Color color = pixels.at(x, y);
            const auto [place, isNew] = places.try_emplace(color.key(), colors.size());
            if (isNew && colors.size() == mostColors)
                return std::nullopt;
            if (isNew)
                colors.push_back({color, 0});
            ++colors[place->second].count;
        }
    }
    return colors;
}

PngSamples indexed(const Pixels& pixels, std::span<const CountedColor> colors) {
    const std::size_t count = colors.size();
    PngSamples samples = emptySamples(pixels, PngSamples::Palette,
                                      count <= 2    ? 1
                                      : count <= 4  ? 2
                                      : count <= 16 ? 4
                                                    : 8);
    std::unordered_map<std::uint32_t, unsigned> indices;
    for (const CountedColor& counted : colors) {
        const Color& color = counted.color;
        indices.emplace(color.key(), static_cast<unsigned>(indices.size()));
        for (const std::uint8_t sample : {color.red, color.green, color.blue})
            samples.palette.append(static_cast<char>(sample));
        if (!color.isOpaque())
            samples.alphas.append(static_cast<char>(color.alpha));
    }
    fill(samples, pixels, [&](const Color& color) { return indices.find(color.key())->second; });
    return samples;
}

/// With palettes in two orders: frequent colours first, and by brightness. Translucent colours stand first.
void appendIndexed(std::vector<PngSamples>& ways, const Pixels& pixels) {
    std::optional<std::vector<CountedColor>> colors = fewColors(pixels);
    if (!colors)
        return;
    std::ranges::stable_sort(*colors, {}, [](const CountedColor& each) {
        return std::pair(each.color.isOpaque(), -static_cast<std::ptrdiff_t>(each.count));
    });
    ways.push_back(indexed(pixels, *colors));
    std::ranges::stable_sort(
        *colors, {}, [](const CountedColor& each) { return std::pair(each.color.alpha, each.color.luma()); });
    ways.push_back(indexed(pixels, *colors));
}

std::vector<PngSamples> fewest(const Pixels& pixels) {
    bool isGrey = true;
    bool isOpaque = true;
    pixels.forEach([&](const Color& color) {
        isGrey = isGrey && color.isGrey();
        isOpaque = isOpaque && color.isOpaque();
    });
    std::vector<PngSamples> ways;
    if (isGrey && isOpaque)
        ways.push_back(grey(pixels));
    else if (isGrey)
        ways.push_back(direct(pixels, PngSamples::GreyAlpha));
    else
        ways.push_back(direct(pixels, isOpaque ? PngSamples::Rgb : PngSamples::Rgba));
    // A palette is no shorter than levels of fewer than 8 bits.
    if (ways.front().bitDepth == 8)
        appendIndexed(ways, pixels);
    return ways;
}

} // namespace

std::size_t PngSamples::pixelBytes() const {
    switch (colorType) {
    case Grey:
    case Palette:
        return 1;
    case GreyAlpha:
        return 2;
    case Rgb:
        return 3;
    case Rgba:
        break;
    }
    return 4;
}

std::size_t PngSamples::paletteBytes() const {
    constexpr qsizetype frame = 12; // of a chunk
    const auto chunk = [](const QByteArray& data) { return data.isEmpty() ? 0 : frame + data.size(); };
    return static_cast<std::size_t>(chunk(palette) + chunk(alphas));
}

std::vector<PngSamples> pngSamplesOf(const QImage& raster, PngChannels channels) {
    const Pixels pixels(raster);
    if (channels == PngChannels::Fewest)
        return fewest(pixels);
    std::vector<PngSamples> ways;
    ways.push_back(direct(pixels, channels == PngChannels::Rgb ? PngSamples::Rgb : PngSamples::Rgba));
    return ways;
}

#include "imaging/png/PngReader.h"
#include "imaging/png/PngRowFilters.h"
#include "imaging/png/PngSamples.h"
#include "imaging/png/PngWriter.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <vector>

namespace {

using ColorAt = std::function<QColor(int x, int y)>;

QByteArray smallest(const QImage& raster, PngChannels channels = PngChannels::Fewest) {
    return *encodePng(raster, {.channels = channels, .effort = PngEffort::Best});
}

/// The depth and the colour type in the header of a file.
struct Kind {
    int bitDepth;
    int colorType;
    bool operator==(const Kind&) const = default;
};

void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.bitDepth << " bits of type " << kind.colorType;
}

Kind kindOf(const QByteArray& png) {
    return {png.at(24), png.at(25)};
}

/// Expects that the picture is written as `kind`, in no more bytes than usual, and reads back as it was.
void expectKind(const QImage& raster, const Kind& kind) {
    const QByteArray png = smallest(raster);
    EXPECT_EQ(kindOf(png), kind);
    EXPECT_LE(png.size(), encodePng(raster)->size());
    const Result<DecodedPicture> picture = readPng(png);
    ASSERT_TRUE(picture) << picture.error().sentence.toStdString();
    EXPECT_TRUE(Pictures::same(picture->raster, raster));
}

/// As many colours, without any order but that each comes. The first `alphas` differ in alpha.
QImage colors(int count, int alphas = 1) {
    std::mt19937 random(7);
    return Pictures::raster(90, 61, [&random, count, alphas](int x, int y) {
        const int place = 90 * y + x;
        const int i = place < count ? place : static_cast<int>(random() % static_cast<unsigned>(count));
        return QColor(97 * i % 256, 57 * i % 256, 29 * i % 256, i < alphas ? 255 - i * 255 / alphas : 255);
    });
}

/// Grey levels that are multiples of `step`.
QImage greys(int step) {
    return Pictures::raster(37, 29, [step](int x, int y) {
        const int level = (x * x * 31 + y * y * 17 + x * y) % (255 / step + 1) * step;
        return QColor(level, level, level);
    });
}

/// Colours beyond what a palette holds, with `alpha`.
QImage manyColors(const std::function<int(int x)>& alpha) {
    return Pictures::raster(40, 40, [&](int x, int y) { return QColor(6 * x, 6 * y, 90, alpha(x)); });
}

} // namespace

TEST(SmallestPng, grey_has_the_fewest_bits) {
    expectKind(greys(255), {1, PngSamples::Grey});
    expectKind(greys(85), {2, PngSamples::Grey});
    expectKind(greys(17), {4, PngSamples::Grey});
    expectKind(greys(1), {8, PngSamples::Grey});
}

TEST(SmallestPng, a_palette_has_the_fewest_bits) {
    expectKind(colors(2), {1, PngSamples::Palette});
    expectKind(colors(4), {2, PngSamples::Palette});
    expectKind(colors(16), {4, PngSamples::Palette});
    expectKind(colors(200), {8, PngSamples::Palette});
}

TEST(SmallestPng, colours_of_a_palette_may_be_translucent) {
    expectKind(colors(3, 2), {2, PngSamples::Palette});
    expectKind(colors(120, 60), {8, PngSamples::Palette});
    const PngSamples samples = pngSamplesOf(colors(120, 60), PngChannels::Fewest).back();
    EXPECT_EQ(samples.palette.size(), 3 * 120);
    EXPECT_EQ(samples.alphas.size(), 59) << "the first of them is opaque";
    EXPECT_FALSE(samples.alphas.contains('\xff'));
}

TEST(SmallestPng, channels_that_say_nothing_are_left_out) {
    expectKind(manyColors([](int) { return 255; }), {8, PngSamples::Rgb});
    expectKind(manyColors([](int x) { return 100 + x; }), {8, PngSamples::Rgba});
    const QImage grey =
        Pictures::raster(60, 60, [](int x, int y) { return QColor(4 * x, 4 * x, 4 * x, 4 * y); });
    expectKind(grey, {8, PngSamples::GreyAlpha});
}

TEST(SmallestPng, a_single_pixel_is_written) {
    expectKind(Pictures::flat(1, 1, QColor(Qt::white)), {1, PngSamples::Grey});
    expectKind(Pictures::flat(1, 1, QColor(0, 0, 0, 0)),
               kindOf(smallest(Pictures::flat(1, 1, QColor(0, 0, 0, 0)))));
}

TEST(SmallestPng, channels_that_were_named_stay) {
    EXPECT_EQ(kindOf(smallest(greys(255), PngChannels::Rgba)), (Kind{8, PngSamples::Rgba}));
    EXPECT_EQ(kindOf(smallest(greys(255), PngChannels::Rgb)), (Kind{8, PngSamples::Rgb}));
}

TEST(SmallestPng, noise_reads_back_to_the_same_pixels) {
    for (const QImage& raster : {Pictures::noise(33, 21, 1), Pictures::translucentNoise(64, 3, 2)}) {
        const QByteArray png = smallest(raster);
        EXPECT_TRUE(Pictures::same(readPng(png)->raster, raster));
        EXPECT_EQ(smallest(raster), png);
    }
}

TEST(PngRowFilters, each_type_reads_back_in_each_kind_of_samples) {
    const QImage translucent =
        Pictures::raster(60, 60, [](int x, int y) { return QColor(4 * x, 4 * x, 4 * x, 4 * y); });
    for (const QImage& raster :
         {greys(255), greys(1), colors(16), colors(200), translucent, manyColors([](int) { return 255; }),
          manyColors([](int x) { return 99 + x; })}) {
        const PngSamples samples = pngSamplesOf(raster, PngChannels::Fewest).front();
        const std::size_t size = samples.rowBytes;
        for (std::uint8_t type = 0; type < PngRowFilters::typeCount; ++type) {
            const std::vector<std::uint8_t> filtered = PngRowFilters::filtered(
                samples, PngRowFilters::Types(static_cast<std::size_t>(raster.height()), type));
            // Put together again as the format says: each byte from its neighbours that were put together.
            std::vector<std::uint8_t> bytes;
            for (std::size_t i = 0; i < samples.bytes.size(); ++i) {
                const std::size_t x = i % size;
                const std::size_t pixel = samples.pixelBytes();
                const int left = x >= pixel ? bytes[i - pixel] : 0;
                const int up = i >= size ? bytes[i - size] : 0;
                const int corner = x >= pixel && i >= size ? bytes[i - size - pixel] : 0;
                const int estimate = left + up - corner;
                const auto distance = [&](int neighbour) { return std::abs(estimate - neighbour); };
                int paeth = corner;
                if (distance(left) <= distance(up) && distance(left) <= distance(corner))
                    paeth = left;
                else if (distance(up) <= distance(corner))
                    paeth = up;
                const int predictions[] = {0, left, up, (left + up) / 2, paeth};
                bytes.push_back(
                    static_cast<std::uint8_t>(filtered[i / size * (size + 1) + 1 + x] + predictions[type]));
            }
            EXPECT_EQ(bytes, samples.bytes) << int{type};
        }
    }
}

TEST(PngRowFilters, a_row_takes_the_type_of_the_least_cost) {
    // The first row rises by one from pixel to pixel, the second is the same.
    const QImage raster = Pictures::raster(50, 2, [](int x, int) { return QColor(x, x, x); });
    const PngSamples samples = pngSamplesOf(raster, PngChannels::Fewest).front();
    ASSERT_EQ(samples.colorType, PngSamples::Grey);
    for (const PngRowFilters::Cost& cost : {PngRowFilters::sums(), PngRowFilters::entropy(),
                                            PngRowFilters::pairs(), PngRowFilters::pairEntropy()})
        EXPECT_EQ(PngRowFilters::chosen(samples, cost)[1], 2);
    EXPECT_EQ(PngRowFilters::chosen(samples, PngRowFilters::sums())[0], 1);
    EXPECT_EQ(PngRowFilters::chosen(samples, PngRowFilters::entropy())[0], 1);
}

TEST(PngRowFilters, lengths_count_two_rows_above) {
    const QImage raster = Pictures::raster(9, 5, [](int x, int y) { return QColor(x, y, 7); });
    const PngSamples samples = pngSamplesOf(raster, PngChannels::Rgb).front();
    std::vector<std::size_t> sizes;
    const auto length = [&sizes](std::span<const std::uint8_t> bytes) {
        sizes.push_back(bytes.size());
        return bytes.size();
    };
    PngRowFilters::chosen(samples, PngRowFilters::lengths(length));
    const std::size_t row = 1 + samples.rowBytes;
    ASSERT_EQ(sizes.size(), 5U * PngRowFilters::typeCount);
    EXPECT_EQ(sizes.front(), row);
    EXPECT_EQ(sizes[PngRowFilters::typeCount], 2 * row);
    EXPECT_EQ(sizes.back(), 3 * row);
}

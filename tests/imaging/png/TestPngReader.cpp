#include "imaging/io/ImageSource.h"
#include "tests/support/Fixtures.h"
#include "tests/support/Pictures.h"
#include "tests/support/Refusals.h"

#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>
#include <zlib.h>

#include <functional>
#include <vector>

using Fixtures::alpha;
using Fixtures::color;
using Fixtures::ColorAt;
using Fixtures::expectPicture;
using Fixtures::grey;
using Fixtures::greyLevel;
using Fixtures::height;
using Fixtures::paletteColor;
using Fixtures::paletteIndex;
using Fixtures::translucent;
using Fixtures::width;
using Pictures::Pixel;
using Pictures::pixel;
using Refusals::expectAtOnce;
using Refusals::expectError;
using Refusals::expectNeedsEveryByte;

namespace {

std::function<QColor(int, int)> greyOf(int count) {
    return [count](int x, int y) {
        const int level = paletteIndex(x, y, count) * 255 / (count - 1);
        return QColor(level, level, level);
    };
}

std::function<QColor(int, int)> paletteOf(int count) {
    return [count](int x, int y) { return paletteColor(paletteIndex(x, y, count)); };
}

/// As `colors`, but each pixel with the colour of the pixel (4, 3) is transparent.
std::function<QColor(int, int)> withoutKey(const std::function<QColor(int, int)>& colors) {
    return
        [colors](int x, int y) { return colors(x, y) == colors(4, 3) ? QColor(0, 0, 0, 0) : colors(x, y); };
}

/// Expects that a file of one row is read as these colours, to within `tolerance`.
void expectRow(const char* name, const std::vector<Pixel>& expected, int tolerance) {
    SCOPED_TRACE(name);
    const Result<DecodedPicture> picture = ImageSource::decode(fixture(name));
    ASSERT_TRUE(picture) << picture.error().sentence.toStdString();
    EXPECT_TRUE(picture->warnings.isEmpty());
    ASSERT_EQ(picture->raster.size(), QSize(static_cast<int>(expected.size()), 1));
    for (int x = 0; x < picture->raster.width(); ++x) {
        SCOPED_TRACE(x);
        const Pixel& wanted = expected[static_cast<std::size_t>(x)];
        const Pixel found = pixel(picture->raster, x, 0);
        EXPECT_NEAR(found.red, wanted.red, tolerance);
        EXPECT_NEAR(found.green, wanted.green, tolerance);
        EXPECT_NEAR(found.blue, wanted.blue, tolerance);
        EXPECT_EQ(found.alpha, wanted.alpha);
    }
}

/// Corrects the check sum of the chunk that begins at `at`.
void seal(QByteArray& png, qsizetype at) {
    const auto length = qFromBigEndian<quint32>(png.constData() + at);
    const auto* data = reinterpret_cast<const Bytef*>(png.constData() + at + 4);
    qToBigEndian<quint32>(static_cast<quint32>(crc32(0, data, length + 4)), png.data() + at + 8 + length);
}

constexpr qsizetype headerChunk = 8;

QByteArray withSize(quint32 w, quint32 h, const char* name = "rgba-8.png") {
    QByteArray png = fixture(name);
    qToBigEndian(w, png.data() + headerChunk + 8);
    qToBigEndian(h, png.data() + headerChunk + 12);
    seal(png, headerChunk);
    return png;
}

/// Where the chunk of that type begins.
qsizetype chunkStart(const QByteArray& png, const char* type) {
    return png.indexOf(type) - 4;
}

const std::vector<Pixel> linearSteps = {{0, 0, 0, 255},       {124, 124, 124, 255}, {170, 170, 170, 255},
                                        {203, 203, 203, 255}, {231, 231, 231, 255}, {255, 255, 255, 255}};

} // namespace

TEST(ImageSourcePng, grey_of_every_depth_is_read_exactly) {
    expectPicture("grey-1.png", greyOf(2));
    expectPicture("grey-2.png", greyOf(4));
    expectPicture("grey-4.png", greyOf(16));
    expectPicture("grey-8.png", grey);
}

TEST(ImageSourcePng, sixteen_bits_are_rounded_to_the_nearest_byte) {
    expectPicture("grey-16.png", grey);
    expectPicture("rgb-16.png", color);
}

TEST(ImageSourcePng, palettes_of_every_depth_are_read_exactly) {
    expectPicture("palette-1.png", paletteOf(2));
    expectPicture("palette-2.png", paletteOf(4));
    expectPicture("palette-4.png", paletteOf(16));
    expectPicture("palette-8.png", paletteOf(256));
}

TEST(ImageSourcePng, the_grey_named_transparent_is_transparent) {
    expectPicture("grey-2-key.png", [](int x, int y) {
        return paletteIndex(x, y, 4) == 2 ? QColor(0, 0, 0, 0) : greyOf(4)(x, y);
    });
    expectPicture("grey-8-key.png", withoutKey(grey));
    expectPicture("grey-16-key.png", withoutKey(grey));
}

TEST(ImageSourcePng, the_colour_named_transparent_is_transparent) {
    expectPicture("rgb-8-key.png", withoutKey(color));
    expectPicture("rgb-16-key.png", withoutKey(color));
}

TEST(ImageSourcePng, palette_entries_may_have_alpha) {
    for (const int count : {4, 256}) {
        expectPicture(count == 4 ? "palette-2-alpha.png" : "palette-8-alpha.png", [count](int x, int y) {
            const int i = paletteIndex(x, y, count);
            QColor c = paletteColor(i);
            c.setAlpha(i < count / 2 ? 60 * i % 256 : 255);
            return c;
        });
    }
}

TEST(ImageSourcePng, grey_with_alpha_is_read_exactly) {
    const ColorAt expected = [](int x, int y) {
        return QColor(greyLevel(x, y), greyLevel(x, y), greyLevel(x, y), alpha(x, y));
    };
    expectPicture("grey-alpha-8.png", expected);
    expectPicture("grey-alpha-16.png", expected);
}

TEST(ImageSourcePng, colour_with_and_without_alpha_is_read_exactly) {
    expectPicture("rgb-8.png", color);
    expectPicture("rgba-8.png", translucent);
    expectPicture("rgba-16.png", translucent);
}

TEST(ImageSourcePng, a_single_pixel_is_multiplied_by_its_alpha) {
    const Result<DecodedPicture> picture = ImageSource::decode(fixture("one-pixel.png"));
    ASSERT_TRUE(picture);
    ASSERT_EQ(picture->raster.size(), QSize(1, 1));
    EXPECT_EQ(pixel(picture->raster, 0, 0), (Pixel{51, 26, 0, 51}));
}

TEST(ImageSourcePng, interlaced_pictures_of_odd_sizes_are_read_exactly) {
    expectPicture("interlaced-rgb-8-1x1.png", color, 1, 1);
    expectPicture("interlaced-rgb-8-2x3.png", color, 2, 3);
    expectPicture("interlaced-rgb-8-5x9.png", color, 5, 9);
    expectPicture("interlaced-rgb-8-11x7.png", color);
}

TEST(ImageSourcePng, interlaced_pictures_of_other_depths_are_read_exactly) {
    expectPicture("interlaced-grey-1.png", greyOf(2));
    expectPicture("interlaced-palette-4.png", paletteOf(16));
    expectPicture("interlaced-rgba-16.png", translucent);
}

TEST(ImageSourcePng, display_p3_colours_are_converted_to_srgb) {
    const std::vector<Pixel> expected = {{0, 0, 0, 255},      {255, 255, 255, 255}, {128, 128, 128, 255},
                                         {209, 147, 91, 255}, {83, 152, 118, 255},  {255, 0, 0, 255}};
    expectRow("display-p3.png", expected, 1);
    expectRow("display-p3-rgba-16.png", expected, 1);
}

TEST(ImageSourcePng, colours_are_converted_before_they_are_multiplied_by_alpha) {
    expectRow("display-p3-alpha.png", {{105, 74, 46, 128}}, 1);
}

TEST(ImageSourcePng, a_grey_profile_converts_grey) {
    expectRow("grey-icc.png", linearSteps, 1);
    expectRow("grey-alpha-icc.png",
              {{0, 0, 0, 0},
               {38, 38, 38, 51},
               {75, 75, 75, 102},
               {113, 113, 113, 153},
               {150, 150, 150, 204},
               {188, 188, 188, 255}},
              1);
}

TEST(ImageSourcePng, an_srgb_profile_leaves_every_byte_as_it_is) {
    expectPicture("srgb-icc.png", color);
    expectPicture("srgb-icc-rgba-16.png", translucent);
}

TEST(ImageSourcePng, linear_samples_are_converted) {
    expectRow("gamma-linear.png", linearSteps, 1);
    expectRow("gamma-linear-grey.png", linearSteps, 1);
}

TEST(ImageSourcePng, the_gamma_that_stands_for_srgb_leaves_every_byte_as_it_is) {
    expectPicture("gamma-srgb.png", color);
}

TEST(ImageSourcePng, the_srgb_chunk_goes_before_the_gamma) {
    expectPicture("srgb-chunk-before-gamma.png", color);
}

TEST(ImageSourcePng, a_broken_profile_is_warned_of_and_the_colours_are_srgb) {
    for (const char* name : {"broken-icc.png", "broken-icc-stream.png"}) {
        SCOPED_TRACE(name);
        const Result<LoadedPicture> picture = ImageSource::load(fixture(name));
        ASSERT_TRUE(picture);
        EXPECT_EQ(picture->warnings, QStringList{PictureReader::profileWarning()});
        EXPECT_TRUE(Pictures::same(picture->image.largestRaster().valueOr({}),
                                   Pictures::raster(width, height, color)));
    }
}

TEST(ImageSourcePng, pictures_are_turned_upright) {
    expectPicture("orientation-6.png", color);
    expectPicture("orientation-3.png", color);
}

TEST(ImageSourcePng, an_animation_is_its_first_frame_with_a_warning) {
    expectPicture("animated.png", color, width, height, {PictureReader::framesWarning()});
}

TEST(ImageSourcePng, an_animation_of_one_frame_is_a_picture) {
    QByteArray png = fixture("animated.png");
    const qsizetype control = chunkStart(png, "acTL");
    qToBigEndian<quint32>(1, png.data() + control + 8);
    seal(png, control);
    expectPicture(png, color);
}

TEST(ImageSourcePng, a_file_cut_off_at_any_byte_is_an_error) {
    for (const char* name :
         {"one-pixel.png", "rgb-8.png", "interlaced-rgb-8-5x9.png", "palette-2-alpha.png"}) {
        SCOPED_TRACE(name);
        expectNeedsEveryByte(fixture(name));
    }
}

TEST(ImageSourcePng, a_wrong_check_sum_of_the_pixels_is_an_error) {
    QByteArray png = fixture("rgb-8.png");
    const qsizetype end = chunkStart(png, "IEND");
    png[end - 1] = static_cast<char>(png[end - 1] ^ 1);
    expectError(png, ErrorCode::Damaged);
    const Result<DecodedPicture> picture = ImageSource::decode(png);
    ASSERT_FALSE(picture);
    EXPECT_TRUE(picture.error().sentence.contains(u"IDAT: CRC error"))
        << picture.error().sentence.toStdString();
}

TEST(ImageSourcePng, a_wrong_check_sum_of_the_end_is_an_error) {
    for (const char* name : {"rgb-8.png", "interlaced-rgb-8-5x9.png", "palette-2-alpha.png"}) {
        QByteArray png = fixture(name);
        png.back() = static_cast<char>(png.back() ^ 1);
        const Result<DecodedPicture> picture = ImageSource::decode(png);
        ASSERT_FALSE(picture) << name;
        EXPECT_EQ(picture.error().code, ErrorCode::Damaged);
        EXPECT_TRUE(picture.error().sentence.contains(u"IEND: CRC error"))
            << picture.error().sentence.toStdString();
    }
}

TEST(ImageSourcePng, any_flipped_bit_in_the_pixels_is_an_error) {
    const QByteArray whole = fixture("rgb-8.png");
    const qsizetype start = chunkStart(whole, "IDAT") + 8;
    const qsizetype end = chunkStart(whole, "IEND");
    for (qsizetype at = start; at < end; ++at) {
        QByteArray png = whole;
        png[at] = static_cast<char>(png[at] ^ 16);
        EXPECT_FALSE(ImageSource::decode(png)) << at;
    }
}

TEST(ImageSourcePng, pixels_that_are_fewer_than_the_header_says_are_an_error) {
    expectError(withSize(width, height + 1), ErrorCode::Damaged);
    expectError(withSize(width, height + 1, "interlaced-rgba-16.png"), ErrorCode::Damaged);
}

TEST(ImageSourcePng, a_header_beyond_the_limit_is_refused_at_once) {
    expectAtOnce([] {
        expectError(withSize(65535, 65535), ErrorCode::TooLarge);
        expectError(withSize(0x7fffffff, 0x7fffffff), ErrorCode::TooLarge);
        expectError(withSize(0x7fffffff, 1), ErrorCode::TooLarge);
        expectError(withSize(16385, 16384), ErrorCode::TooLarge);
        expectError(withSize(65535, 65535, "interlaced-rgba-16.png"), ErrorCode::TooLarge);
    });
}

TEST(ImageSourcePng, a_header_without_pixels_is_refused) {
    expectError(withSize(0, 5), ErrorCode::Damaged);
    expectError(withSize(5, 0), ErrorCode::Damaged);
    expectError(withSize(0x80000000, 5), ErrorCode::Damaged);
}

TEST(ImageSourcePng, a_large_picture_has_reduced_copies_that_halve_its_sides) {
    const Image image = Pictures::loadedImage(Pictures::noise(301, 200, 1));
    QList<QSize> sizes;
    for (const auto& representation : image.representations())
        sizes << representation->pixelSize();
    EXPECT_EQ(sizes, (QList<QSize>{{301, 200}, {151, 100}, {76, 50}, {38, 50}}));
    EXPECT_EQ(image.size(), QSizeF(301, 200));
}

TEST(ImageSourcePng, a_long_thin_picture_is_halved_along_its_length) {
    const Image image = Pictures::loadedImage(Pictures::noise(5000, 1, 1));
    EXPECT_EQ(image.representations().back()->pixelSize(), QSize(40, 1));
    // A render draws from a copy with at least twice its width, and with all of the picture's height.
    EXPECT_EQ(image.bestRepresentation(QSizeF(16, 16))->pixelSize(), QSize(40, 1));
    EXPECT_EQ(image.bestRepresentation(QSizeF(100, 100))->pixelSize(), QSize(313, 1));
}

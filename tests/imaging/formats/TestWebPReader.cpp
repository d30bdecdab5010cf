#include "imaging/io/ImageSource.h"
#include "tests/support/FilledMemory.h"
#include "tests/support/Fixtures.h"
#include "tests/support/Pictures.h"
#include "tests/support/Refusals.h"

#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <functional>
#include <vector>

using Fixtures::color;
using Fixtures::expectPicture;
using Fixtures::height;
using Fixtures::width;
using Pictures::Pixel;
using Pictures::pixel;
using Refusals::expectAtOnce;
using Refusals::expectError;
using Refusals::expectNeedsEveryByte;

namespace {

void expectNear(const Pixel& found, const Pixel& wanted, int tolerance) {
    EXPECT_NEAR(found.red, wanted.red, tolerance);
    EXPECT_NEAR(found.green, wanted.green, tolerance);
    EXPECT_NEAR(found.blue, wanted.blue, tolerance);
    EXPECT_EQ(found.alpha, wanted.alpha);
}

/// The most memory that the process has had so far, in MiB.
long peakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

} // namespace

TEST(ImageSourceWebP, lossy_colours_are_read_to_within_the_formats_rounding) {
    const std::vector<Pixel> blocks = {{200, 40, 40, 255},  {40, 180, 60, 255},   {50, 60, 220, 255},
                                       {230, 220, 60, 255}, {128, 128, 128, 255}, {20, 20, 20, 255}};
    const Result<DecodedPicture> picture = ImageSource::decode(fixture("lossy.webp"));
    ASSERT_TRUE(picture);
    ASSERT_EQ(picture->raster.size(), QSize(48, 32));
    for (int i = 0; i < 6; ++i) {
        SCOPED_TRACE(i);
        expectNear(pixel(picture->raster, i % 3 * 16 + 8, i / 3 * 16 + 8),
                   blocks[static_cast<std::size_t>(i)], 5);
    }
}

TEST(ImageSourceWebP, lossless_colours_are_read_exactly) {
    expectPicture("lossless.webp", color);
}

TEST(ImageSourceWebP, lossless_alpha_is_read_exactly) {
    expectPicture("lossless-alpha.webp", [](int x, int y) {
        QColor c = color(x, y);
        c.setAlpha((40 * x + 9 * y + 15) % 256);
        return c;
    });
}

TEST(ImageSourceWebP, pictures_are_turned_upright) {
    expectPicture("orientation-6.webp", color);
}

TEST(ImageSourceWebP, an_animation_is_its_first_frame_with_a_warning) {
    expectPicture("animated.webp", color, width, height, {PictureReader::framesWarning()});
}

TEST(ImageSourceWebP, what_an_animations_first_frame_leaves_free_is_clear) {
    QByteArray webp = fixture("animated.webp");
    ASSERT_EQ(webp.mid(12, 4), QByteArray("VP8X"));
    const char flags = webp[20];
    constexpr char alpha = 0x10;
    ASSERT_EQ(flags & alpha, 0);
    constexpr int canvasHeight = 64;
    webp[27] = canvasHeight - 1;
    const FilledMemory filled;
    expectPicture(webp, [](int x, int y) { return y < height ? color(x, y) : QColor(Qt::transparent); },
                  width, canvasHeight, {PictureReader::framesWarning()});
}

TEST(ImageSourceWebP, display_p3_colours_are_converted_to_srgb) {
    const std::vector<Pixel> expected = {
        {255, 255, 255, 255}, {128, 128, 128, 255}, {209, 147, 91, 255}, {83, 152, 118, 255}};
    const Result<DecodedPicture> picture = ImageSource::decode(fixture("display-p3.webp"));
    ASSERT_TRUE(picture);
    EXPECT_TRUE(picture->warnings.isEmpty());
    ASSERT_EQ(picture->raster.size(), QSize(4, 1));
    for (int x = 0; x < 4; ++x)
        expectNear(pixel(picture->raster, x, 0), expected[static_cast<std::size_t>(x)], 1);
}

TEST(ImageSourceWebP, a_broken_profile_is_warned_of_and_the_colours_are_srgb) {
    expectPicture("broken-icc.webp", color, width, height, {PictureReader::profileWarning()});
}

TEST(ImageSourceWebP, a_file_cut_off_at_any_byte_is_an_error) {
    for (const char* name : {"lossy.webp", "lossless.webp", "lossless-alpha.webp"}) {
        SCOPED_TRACE(name);
        expectNeedsEveryByte(fixture(name));
    }
}

TEST(ImageSourceWebP, a_file_with_more_than_pixels_cut_off_anywhere_is_an_error) {
    for (const char* name : {"orientation-6.webp", "display-p3.webp", "animated.webp"}) {
        SCOPED_TRACE(name);
        expectNeedsEveryByte(fixture(name));
    }
}

TEST(ImageSourceWebP, a_canvas_beyond_the_limit_is_refused_at_once) {
    QByteArray webp = fixture("animated.webp");
    ASSERT_EQ(webp.mid(12, 4), QByteArray("VP8X"));
    // Width and height less one, of three bytes each.
    webp.replace(24, 6, QByteArray("\xff\x7f\0\xff\x7f\0", 6));
    expectAtOnce([&] { expectError(webp, ErrorCode::TooLarge); });
}

TEST(ImageSourceWebP, a_canvas_beyond_the_limit_takes_no_memory_for_pixels) {
    QByteArray webp = fixture("animated.webp");
    ASSERT_EQ(webp.mid(12, 4), QByteArray("VP8X"));
    webp[20] = static_cast<char>(webp[20] | 0x10);              // with alpha
    webp.replace(24, 6, QByteArray("\x1f\x4e\0\x1f\x4e\0", 6)); // 20000 × 20000
    const long before = peakMemory();
    const Result<DecodedPicture> picture = ImageSource::decode(webp);
    ASSERT_FALSE(picture);
    EXPECT_EQ(picture.error().code, ErrorCode::TooLarge) << picture.error().sentence.toStdString();
    EXPECT_LT(peakMemory() - before, 200);
}

#include "imaging/io/ImageSource.h"
#include "tests/support/FilledMemory.h"
#include "tests/support/Fixtures.h"
#include "tests/support/Pictures.h"
#include "tests/support/Refusals.h"

#include <QFile>
#include <QImageReader>
#include <QtEndian>

#include <gtest/gtest.h>

#include <functional>
#include <limits>

using Fixtures::color;
using Fixtures::height;
using Fixtures::paletteColor;
using Fixtures::width;
using Refusals::expectAtOnce;
using Refusals::expectError;
using Refusals::expectNeedsEveryByte;

namespace {

std::function<QColor(int, int)> paletteOf(int count) {
    return [count](int x, int y) { return paletteColor((5 * x + 3 * y) % count); };
}

void expectBmp(const char* name, const std::function<QColor(int x, int y)>& expected) {
    SCOPED_TRACE(name);
    const Result<DecodedPicture> picture = ImageSource::decode(fixture(name));
    ASSERT_TRUE(picture) << picture.error().sentence.toStdString();
    EXPECT_TRUE(picture->warnings.isEmpty());
    ASSERT_EQ(picture->raster.size(), QSize(width, height));
    ASSERT_EQ(picture->raster.format(), QImage::Format_RGBA8888_Premultiplied);
    EXPECT_EQ(Pictures::largestDifference(picture->raster, Pictures::raster(width, height, expected)), 0);
}

QByteArray withSize(const char* name, qint32 w, qint32 h) {
    QByteArray bmp = fixture(name);
    qToLittleEndian(w, bmp.data() + 18);
    qToLittleEndian(h, bmp.data() + 22);
    return bmp;
}

} // namespace

TEST(ImageSourceBmp, palettes_are_read_exactly) {
    expectBmp("palette-1.bmp", paletteOf(2));
    expectBmp("palette-4.bmp", paletteOf(16));
    expectBmp("palette-8.bmp", paletteOf(256));
}

TEST(ImageSourceBmp, colours_are_read_exactly) {
    expectBmp("rgb-24.bmp", color);
}

TEST(ImageSourceBmp, the_unused_byte_of_32_bits_is_no_alpha) {
    expectBmp("rgb-32.bmp", color);
}

TEST(ImageSourceBmp, a_negative_height_is_a_picture_from_the_top) {
    expectBmp("rgb-24-top-down.bmp", color);
}

TEST(ImageSourceBmp, run_lengths_are_read_exactly) {
    expectBmp("rle-8.bmp", [](int x, int y) {
        return paletteColor(x < 4 ? y : x < 9 ? 5 * x + 3 * y : y + 20);
    });
}

TEST(ImageSourceBmp, pixels_that_run_lengths_skip_have_the_first_colour) {
    // From below: three pixels and the end of the line; an offset of two pixels and a line; two pixels; the
    // end.
    const QByteArray bmp = fixture("rle-8.bmp").left(14 + 40 + 4 * 256) + QByteArray("\3\7\0\0"
                                                                                     "\0\2\2\1"
                                                                                     "\2\11\0\1",
                                                                                     12);
    const FilledMemory filled;
    Fixtures::expectPicture(bmp, [](int x, int y) {
        const bool isFirstRun = y == height - 1 && x < 3;
        const bool isSecondRun = y == height - 3 && (x == 2 || x == 3);
        return paletteColor(isFirstRun ? 7 : isSecondRun ? 9 : 0);
    });
}

TEST(ImageSourceBmp, a_file_cut_off_at_any_byte_is_an_error) {
    for (const char* name : {"palette-1.bmp", "palette-4.bmp", "rgb-24.bmp", "rgb-32.bmp"}) {
        SCOPED_TRACE(name);
        expectNeedsEveryByte(fixture(name));
    }
}

TEST(ImageSourceBmp, a_picture_from_the_top_cut_off_at_any_byte_is_an_error) {
    expectNeedsEveryByte(fixture("rgb-24-top-down.bmp"));
}

TEST(ImageSourceBmp, run_lengths_that_break_off_are_an_error) {
    // The last two bytes, after the last pixel, mark the end of the picture.
    expectNeedsEveryByte(fixture("rle-8.bmp"), 2);
}

TEST(ImageSourceBmp, a_header_beyond_the_limit_is_refused_at_once) {
    expectAtOnce([] {
        for (const char* name : {"rgb-24.bmp", "palette-1.bmp", "rle-8.bmp"}) {
            SCOPED_TRACE(name);
            for (const qint32 h : {65535, -65535, 0x7fffffff, -0x7fffffff})
                expectError(withSize(name, 65535, h), ErrorCode::TooLarge);
        }
    });
}

TEST(ImageSourceBmp, a_header_without_pixels_is_refused) {
    EXPECT_FALSE(ImageSource::decode(withSize("rgb-24.bmp", 0, height)));
    EXPECT_FALSE(ImageSource::decode(withSize("rgb-24.bmp", width, 0)));
    EXPECT_FALSE(ImageSource::decode(withSize("rgb-24.bmp", -width, height)));
    EXPECT_FALSE(ImageSource::decode(withSize("rgb-24.bmp", width, std::numeric_limits<qint32>::min())));
}

TEST(ImageSourceBmp, the_limit_of_what_Qt_itself_reads_stays_as_it_was) {
    const int before = QImageReader::allocationLimit();
    EXPECT_TRUE(ImageSource::decode(fixture("rgb-24.bmp")));
    EXPECT_EQ(QImageReader::allocationLimit(), before);
}

#include "imaging/drawing/GraphicsContext.h"
#include "imaging/formats/JpegReader.h"
#include "imaging/image/BitmapImageRep.h"
#include "imaging/io/ImageSource.h"
#include "imaging/pixels/ReducedCopies.h"
#include "imaging/pixels/ReducingStream.h"
#include "imaging/pixels/Resampler.h"
#include "imaging/png/PngReader.h"
#include "tests/support/Fixtures.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

using ReducedCopies::largestNeeded;
using ReducedCopies::nextSize;

/// The copy of `picture` that has `size`, made from rows that come one by one.
QImage streamed(const QImage& picture, const QSize& size) {
    QImage copy(size, picture.format());
    Result<ReducingStream> stream = ReducingStream::create(picture.size(), copy);
    for (int y = 0; y < picture.height(); ++y) {
        std::copy_n(picture.constScanLine(y), 4 * picture.width(), stream->nextRow());
        stream->addRow();
    }
    return copy;
}

QImage drawn(const Image& image, const QSizeF& size) {
    return *drawnRaster(image, size);
}

/// Options for a single render of that size.
LoadOptions drawnAs(const QSizeF& size) {
    return {std::vector{size}};
}

qint64 pixelsOf(const Image& image) {
    qint64 sum = 0;
    for (const auto& representation : image.representations())
        sum += qint64{representation->pixelSize().width()} * representation->pixelSize().height();
    return sum;
}

/// Files of pictures of 203 × 131 pixels. Some have that size after they have been turned upright.
const char* const files[] = {"large-rgba-8.png",
                             "large-rgba-16.png",
                             "large-grey-8.png",
                             "large-grey-icc.png",
                             "large-palette-4.png",
                             "large-interlaced-rgba-8.png",
                             "large-orientation-6.png",
                             "large-orientation-6-behind.png",
                             "large-rgb.jpg",
                             "large-progressive.jpg",
                             "large-cmyk.jpg",
                             "large-display-p3.jpg",
                             "large-orientation-5.jpg",
                             "large.gif",
                             "large.webp"};
const QSize fileSize(203, 131);

} // namespace

TEST(ReducedCopies, sides_are_halved_and_rounded_up_down_to_32) {
    EXPECT_EQ(nextSize(QSize(4096, 4096)), QSize(2048, 2048));
    EXPECT_EQ(nextSize(QSize(203, 131)), QSize(102, 66));
    EXPECT_EQ(nextSize(QSize(64, 65)), QSize(32, 33));
    EXPECT_EQ(nextSize(QSize(63, 1000)), QSize(63, 500));
    EXPECT_EQ(nextSize(QSize(63, 63)), QSize(63, 63));
    EXPECT_EQ(nextSize(QSize(1, 1)), QSize(1, 1));
}

TEST(ReducedCopies, a_long_thin_picture_is_made_shorter_first) {
    EXPECT_EQ(nextSize(QSize(1000000, 268)), QSize(250000, 268));
    EXPECT_EQ(nextSize(QSize(268, 1000000)), QSize(268, 250000));
    EXPECT_EQ(nextSize(QSize(1600, 100)), QSize(400, 100));
    EXPECT_EQ(nextSize(QSize(1599, 100)), QSize(800, 50));
    EXPECT_EQ(nextSize(QSize(129, 2)), QSize(33, 2));
    EXPECT_EQ(nextSize(QSize(127, 2)), QSize(64, 2));
    EXPECT_EQ(largestNeeded(QSize(1000000, 268), std::vector<QSizeF>{{1024, 1024}, {16, 16}}),
              QSize(3907, 268));
}

TEST(ReducedCopies, a_render_draws_from_its_own_size_or_from_twice_its_pixels) {
    const std::vector<QSize> sizes{{4096, 4096}, {2048, 2048}, {1024, 1024}, {512, 512}};
    const auto best = [&](double width, double height) {
        return sizes.at(ReducedCopies::bestOf(sizes, QSizeF(width, height))).width();
    };
    EXPECT_EQ(best(1024, 1024), 1024);
    EXPECT_EQ(best(1000, 1000), 2048);
    EXPECT_EQ(best(1024, 1000), 2048);
    EXPECT_EQ(best(1024.5, 1024.5), 4096);
    EXPECT_EQ(best(512, 511), 1024);
    EXPECT_EQ(best(1, 1), 512);
    EXPECT_EQ(best(10000, 1), 4096);
    EXPECT_EQ(ReducedCopies::bestOf({}, QSizeF(1, 1)), 0U);
}

TEST(ReducedCopies, the_largest_needed_is_what_one_of_the_renders_draws_from) {
    const auto needed = [](const QSize& size, const std::vector<QSizeF>& renders) {
        return largestNeeded(size, renders);
    };
    const QSize whole(4096, 4096);
    EXPECT_EQ(largestNeeded(whole, std::nullopt), whole);
    EXPECT_EQ(needed(whole, {{1024, 1024}, {512, 512}, {180, 180}}), QSize(1024, 1024));
    EXPECT_EQ(needed(whole, {{1024, 1024}, {513, 16}}), QSize(2048, 2048));
    EXPECT_EQ(needed(whole, {{16, 16}, {1025, 10}}), whole);
    EXPECT_EQ(needed(whole, {{1000, 1000}}), QSize(2048, 2048));
    EXPECT_EQ(needed(whole, {{10000, 10000}}), whole);
    EXPECT_EQ(needed(whole, {{1, 1}}), QSize(32, 32));
    EXPECT_EQ(needed(whole, {}), QSize(32, 32));
    EXPECT_EQ(needed(QSize(8192, 300), {{64, 64}}), QSize(1024, 150));
    EXPECT_EQ(needed(QSize(40, 8192), {{20, 20}}), QSize(40, 64));
    EXPECT_EQ(needed(QSize(40, 8192), {{40, 20}}), QSize(40, 64));
    EXPECT_EQ(needed(QSize(40, 8192), {{20, 4097}}), QSize(40, 8192));
    const double none = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(needed(whole, {{none, none}}), whole);
}

TEST(ReducedCopies, rows_that_come_one_by_one_give_the_same_copies) {
    for (const QSize& size : {QSize(64, 64), QSize(97, 61), QSize(203, 131), QSize(61, 409), QSize(1, 300),
                              QSize(300, 1), QSize(511, 65), QSize(1024, 130)}) {
        const QImage picture = Pictures::translucentNoise(size.width(), size.height(), 7);
        QImage expected = picture;
        for (QSize copy = nextSize(size); copy != expected.size(); copy = nextSize(copy)) {
            expected = *stretched(expected, copy);
            EXPECT_TRUE(Pictures::same(streamed(picture, copy), expected))
                << size.width() << " x " << size.height() << " to " << copy.width() << " x " << copy.height();
        }
    }
}

TEST(ReducedCopies, renders_are_the_same_whatever_is_known_of_them) {
    for (const char* name : files) {
        SCOPED_TRACE(name);
        const QByteArray bytes = fixture(name);
        const Result<LoadedPicture> whole = ImageSource::load(bytes);
        ASSERT_TRUE(whole) << whole.error().sentence.toStdString();
        ASSERT_EQ(whole->image.size(), QSizeF(fileSize));
        for (const QSizeF& largest : {QSizeF(1, 1), QSizeF(16, 16), QSizeF(25, 16), QSizeF(50.5, 3),
                                      QSizeF(51, 33), QSizeF(102, 66), QSizeF(203, 131), QSizeF(500, 400)}) {
            const std::vector<QSizeF> renders{largest, QSizeF(1, 1), QSizeF(largest.width(), 1), largest / 3};
            const Result<LoadedPicture> limited = ImageSource::load(bytes, {renders});
            ASSERT_TRUE(limited);
            EXPECT_EQ(limited->image.size(), whole->image.size());
            EXPECT_EQ(limited->warnings, whole->warnings);
            for (const QSizeF& size : renders)
                EXPECT_TRUE(Pictures::same(drawn(limited->image, size), drawn(whole->image, size)))
                    << size.width() << " x " << size.height() << " of at most " << largest.width() << " x "
                    << largest.height();
        }
    }
}

TEST(ReducedCopies, what_no_render_draws_from_is_not_kept) {
    for (const char* name : files) {
        SCOPED_TRACE(name);
        const QByteArray bytes = fixture(name);
        const auto pixels = [&](const LoadOptions& options) {
            const Result<LoadedPicture> picture = ImageSource::load(bytes, options);
            return picture ? pixelsOf(picture->image) : 0;
        };
        constexpr qint64 half = 102 * 66;
        constexpr qint64 quarter = 51 * 33;
        EXPECT_EQ(pixels({}), 203 * 131 + half + quarter);
        EXPECT_EQ(pixels(drawnAs({52, 33})), 203 * 131 + half + quarter);
        EXPECT_EQ(pixels(drawnAs({50, 33})), half + quarter);
        EXPECT_EQ(pixels(drawnAs({102, 66})), half + quarter);
        EXPECT_EQ(pixels(drawnAs({51, 33})), quarter);
        EXPECT_EQ(pixels(drawnAs({25, 16})), quarter);
    }
}

TEST(ReducedCopies, png_and_jpeg_are_reduced_while_they_are_read) {
    const ReducedCopies::Renders renders{{QSizeF(50, 33)}};
    for (const char* name : files) {
        SCOPED_TRACE(name);
        const QByteArray bytes = fixture(name);
        const QByteArray file(name);
        if (!file.endsWith(".png") && !file.endsWith(".jpg"))
            continue;
        const Result<DecodedPicture> picture =
            file.endsWith(".png") ? readPng(bytes, renders) : readJpeg(bytes, renders);
        ASSERT_TRUE(picture);
        // A picture that is turned upright is decoded as a whole.
        const bool isUpright = !file.contains("orientation");
        EXPECT_EQ(picture->raster.size(), isUpright ? QSize(102, 66) : fileSize);
        EXPECT_EQ(picture->wholeSize, isUpright ? fileSize : QSize());
    }
}

TEST(ReducedCopies, an_icns_file_keeps_its_own_pictures) {
    const QByteArray bytes = fixture("packed.icns");
    const Result<LoadedPicture> whole = ImageSource::load(bytes);
    const Result<LoadedPicture> limited = ImageSource::load(bytes, drawnAs({16, 16}));
    ASSERT_TRUE(whole && limited);
    EXPECT_EQ(pixelsOf(limited->image), pixelsOf(whole->image));
    EXPECT_TRUE(Pictures::same(drawn(limited->image, {16, 16}), drawn(whole->image, {16, 16})));
}

TEST(ReducedCopies, a_file_that_breaks_off_is_an_error_in_any_size) {
    for (const char* name : {"large-rgba-8.png", "large-interlaced-rgba-8.png", "large-rgb.jpg"}) {
        const QByteArray whole = fixture(name);
        for (qsizetype length = 0; length < whole.size(); length += 97)
            EXPECT_FALSE(ImageSource::load(whole.left(length), drawnAs({16, 16})))
                << name << ", " << length << " bytes";
    }
}

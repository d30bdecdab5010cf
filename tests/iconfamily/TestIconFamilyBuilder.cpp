#include "iconfamily/IconFamily.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/io/ImageSource.h"
#include "tests/support/Pictures.h"
#include "tests/support/RecordingLog.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using Interpolation = IconFamily::ImageInterpolation;

QImage resampled(const Image& image, int size, Interpolation interpolation = Interpolation::High) {
    return IconFamily::resampleImage(image, size, interpolation).largestRaster().valueOr({});
}

/// The smallest rectangle around all pixels that are not transparent.
QRect drawnRect(const QImage& raster) {
    QRect rect;
    for (int y = 0; y < raster.height(); ++y) {
        for (int x = 0; x < raster.width(); ++x) {
            if (raster.pixelColor(x, y).alpha() > 0)
                rect |= QRect(x, y, 1, 1);
        }
    }
    return rect;
}

TEST(IconFamilyBuilder, fits_a_wide_picture_by_its_width_and_centres_it) {
    const Image wide = Pictures::loadedImage(Pictures::flat(300, 150, Qt::red));
    EXPECT_EQ(drawnRect(resampled(wide, 48)), QRect(0, 12, 48, 24));
    for (const int size : {16, 32, 128, 1024})
        EXPECT_EQ(drawnRect(resampled(wide, size)), QRect(0, size / 4, size, size / 2)) << size;
}

TEST(IconFamilyBuilder, fits_a_tall_picture_by_its_height) {
    const Image tall = Pictures::loadedImage(Pictures::flat(150, 300, Qt::red));
    EXPECT_EQ(drawnRect(resampled(tall, 48)), QRect(12, 0, 24, 48));
    // The width is floor(100 × 16 ÷ 300 + 0.5) = 5. Centred, it covers half a pixel at either side.
    const QImage odd = resampled(Pictures::loadedImage(Pictures::flat(100, 300, Qt::red)), 16);
    EXPECT_EQ(drawnRect(odd), QRect(5, 0, 6, 16));
    EXPECT_NEAR(odd.pixelColor(5, 8).alpha(), 128, 1);
    EXPECT_EQ(odd.pixelColor(7, 8), QColor(Qt::red));
    EXPECT_NEAR(odd.pixelColor(10, 8).alpha(), 128, 1);
}

TEST(IconFamilyBuilder, the_other_edge_is_rounded_half_up) {
    // 200 × 16 ÷ 300 = 10.67 is rounded to 11. The picture begins 2.5 pixels from the left.
    EXPECT_EQ(drawnRect(resampled(Pictures::loadedImage(Pictures::flat(200, 300, Qt::red)), 16)),
              QRect(2, 0, 12, 16));
    // 50 × 16 ÷ 320 = 2.5 is rounded to 3.
    EXPECT_EQ(drawnRect(resampled(Pictures::loadedImage(Pictures::flat(320, 50, Qt::red)), 16)).height(), 4);
    EXPECT_EQ(drawnRect(resampled(Pictures::loadedImage(Pictures::flat(320, 59, Qt::red)), 16)).height(), 4);
    // 59 × 16 ÷ 320 = 2.95 is rounded to 3, too. 40 × 16 ÷ 320 = 2 fits whole pixels.
    EXPECT_EQ(drawnRect(resampled(Pictures::loadedImage(Pictures::flat(320, 40, Qt::red)), 16)).height(), 2);
}

TEST(IconFamilyBuilder, without_another_wish_the_filter_is_the_high_one) {
    const RecordingLog log;
    const Image image = Pictures::loadedImage(Pictures::noise(200, 200, 4));
    const auto data = [&](Interpolation interpolation) {
        return IconFamily::initWithThumbnailsOfImage(image, interpolation)->data();
    };
    const QByteArray plain = IconFamily::initWithThumbnailsOfImage(image)->data();
    EXPECT_EQ(plain, data(Interpolation::High));
    EXPECT_EQ(plain, data(Interpolation::Default));
    EXPECT_NE(plain, data(Interpolation::Low));
    EXPECT_NE(plain, data(Interpolation::Medium));
    EXPECT_NE(data(Interpolation::Medium), data(Interpolation::Low));
    EXPECT_EQ(static_cast<int>(Interpolation::High), 3);
    EXPECT_EQ(static_cast<int>(Interpolation::Medium), 4);
}

TEST(IconFamilyBuilder, nearest_samples_are_taken_from_one_side_throughout) {
    const Image stripes = Pictures::image(Pictures::raster(
        64, 64, [](int x, int) { return x % 2 == 0 ? QColor(Qt::black) : QColor(Qt::white); }));
    const QImage halved = resampled(stripes, 32, Interpolation::None);
    for (int x = 0; x < 32; ++x)
        EXPECT_EQ(halved.pixelColor(x, 16), halved.pixelColor(0, 16)) << x;
}

TEST(IconFamilyBuilder, a_drawing_is_drawn_in_each_size) {
    const RecordingLog log;
    const Result<LoadedPicture> drawing =
        ImageSource::load("<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                          "<rect width='20' height='10' fill='#00f'/></svg>");
    ASSERT_TRUE(drawing);
    EXPECT_EQ(drawnRect(resampled(drawing->image, 64)), QRect(0, 16, 64, 32));
    const auto family = IconFamily::initWithThumbnailsOfImage(drawing->image);
    ASSERT_NE(family, nullptr);
    EXPECT_EQ(family->imageWithAllReps().representations().size(), 6U);
}

TEST(IconFamilyBuilder, a_drawing_without_a_size_gives_none) {
    const Result<LoadedPicture> drawing =
        ImageSource::load("<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'/>");
    ASSERT_TRUE(drawing);
    for (const QSizeF& size : {QSizeF(0, 5), QSizeF(5, 0), QSizeF(), QSizeF(5, qQNaN()), QSizeF(5, 5)}) {
        Image image(size);
        image.addRepresentation(drawing->image.representations().front());
        EXPECT_EQ(IconFamily::resampleImage(image, 16, Interpolation::High).isNull(), size != QSizeF(5, 5));
    }
}

TEST(IconFamilyBuilder, a_square_without_memory_gives_none) {
    const Image picture = Pictures::loadedImage(Pictures::flat(5, 5, Qt::red));
    EXPECT_TRUE(
        IconFamily::resampleImage(picture, std::numeric_limits<qint32>::max(), Interpolation::High).isNull());
}

TEST(IconFamilyBuilder, a_square_picture_fills_the_square) {
    EXPECT_TRUE(Pictures::same(resampled(Pictures::loadedImage(Pictures::flat(77, 77, Qt::red)), 48),
                               Pictures::flat(48, 48, Qt::red)));
}

TEST(IconFamilyBuilder, of_a_bitmap_the_size_in_pixels_counts) {
    // The image is half as wide in points as in pixels.
    Image image(QSizeF(150, 300));
    image.addRepresentation(std::make_shared<BitmapImageRep>(Pictures::flat(300, 300, Qt::red)));
    EXPECT_EQ(drawnRect(resampled(image, 48)), QRect(0, 0, 48, 48));
}

TEST(IconFamilyBuilder, of_several_bitmaps_the_largest_counts) {
    Image image(QSizeF(16, 16));
    for (const int size : {16, 64, 32})
        image.addRepresentation(
            std::make_shared<BitmapImageRep>(Pictures::flat(size, size, size == 64 ? Qt::blue : Qt::red)));
    EXPECT_EQ(resampled(image, 16).pixelColor(8, 8), QColor(Qt::blue));
}

TEST(IconFamilyBuilder, an_edge_that_rounds_to_nothing_leaves_a_transparent_square) {
    const QImage raster = resampled(Pictures::loadedImage(Pictures::flat(1000, 10, Qt::red)), 16);
    EXPECT_EQ(raster.size(), QSize(16, 16));
    EXPECT_TRUE(drawnRect(raster).isNull());
}

TEST(IconFamilyBuilder, without_a_picture_or_a_size_there_is_none) {
    EXPECT_TRUE(IconFamily::resampleImage({}, 16, Interpolation::High).isNull());
    EXPECT_TRUE(IconFamily::resampleImage(Image(QSizeF(5, 5)), 16, Interpolation::High).isNull());
    const Image picture = Pictures::loadedImage(Pictures::flat(5, 5, Qt::red));
    EXPECT_TRUE(IconFamily::resampleImage(picture, 0, Interpolation::High).isNull());
    EXPECT_TRUE(IconFamily::resampleImage(picture, -1, Interpolation::High).isNull());
    EXPECT_EQ(IconFamily::iconFamilyWithThumbnailsOfImage(Image()), nullptr);
}

TEST(IconFamilyBuilder, the_five_interpolations_are_four_filters) {
    const Image picture = Pictures::loadedImage(Pictures::noise(100, 100, 1));
    const QImage none = resampled(picture, 32, Interpolation::None);
    const QImage low = resampled(picture, 32, Interpolation::Low);
    const QImage medium = resampled(picture, 32, Interpolation::Medium);
    const QImage high = resampled(picture, 32, Interpolation::High);
    EXPECT_TRUE(Pictures::same(resampled(picture, 32, Interpolation::Default), high));
    for (const auto& [a, b] :
         {std::pair(none, low), std::pair(low, medium), std::pair(medium, high), std::pair(none, high)})
        EXPECT_GT(Pictures::largestDifference(a, b), 3);
    // The nearest sample: pixel i takes sample floor((i + 0.5) × 100 ÷ 32).
    const QImage noise = Pictures::noise(100, 100, 1);
    for (const int i : {0, 1, 13, 31})
        EXPECT_EQ(none.pixelColor(i, i), noise.pixelColor(static_cast<int>((i + 0.5) * 100 / 32),
                                                          static_cast<int>((i + 0.5) * 100 / 32)));
}

TEST(IconFamilyBuilder, low_is_a_triangle_and_medium_a_cubic) {
    // A step in the middle of 8 samples, enlarged four times.
    const Image step = Pictures::loadedImage(
        Pictures::raster(8, 8, [](int x, int) { return x < 4 ? QColor(0, 0, 0) : QColor(200, 200, 200); }));
    const auto triangle = [](double x) { return std::clamp(x - 3.5, 0.0, 1.0) * 200; };
    const auto cubic = [](double x) {
        // The Catmull-Rom curve through 0, 0, 200, 200 at 2.5, 3.5, 4.5, 5.5.
        const auto weight = [](double d) {
            d = std::abs(d);
            return d < 1   ? 1.5 * d * d * d - 2.5 * d * d + 1
                   : d < 2 ? -0.5 * d * d * d + 2.5 * d * d - 4 * d + 2
                           : 0.0;
        };
        double sum = 0;
        for (double sample = 4.5; sample < 9; ++sample)
            sum += 200 * weight(x - sample);
        return std::clamp(sum, 0.0, 255.0);
    };
    const QImage low = resampled(step, 32, Interpolation::Low);
    const QImage medium = resampled(step, 32, Interpolation::Medium);
    for (int i = 8; i < 24; ++i) {
        const double x = (i + 0.5) / 4;
        EXPECT_NEAR(low.pixelColor(i, 16).red(), triangle(x), 1) << i;
        EXPECT_NEAR(medium.pixelColor(i, 16).red(), cubic(x), 1) << i;
    }
}

TEST(IconFamilyBuilder, a_family_has_six_elements_in_order_and_no_ic10) {
    const RecordingLog log;
    const auto family =
        IconFamily::iconFamilyWithThumbnailsOfImage(Pictures::loadedImage(Pictures::noise(300, 150, 1)));
    ASSERT_NE(family, nullptr);
    EXPECT_EQ(log.lines(),
              QStringList(QStringLiteral("Null data returned to setIconFamilyElement:fromBitmapImageRep:")));
    const Result<IcnsReader> reader = IcnsReader::open(family->data());
    ASSERT_TRUE(reader);
    QStringList types;
    for (const IcnsElement& element : reader->elements())
        types << element.type.text();
    EXPECT_EQ(types, QStringList({QStringLiteral("ic09"), QStringLiteral("ic08"), QStringLiteral("ic07"),
                                  QStringLiteral("ic06"), QStringLiteral("ic05"), QStringLiteral("ic04")}));
}

TEST(IconFamilyBuilder, smaller_sizes_are_made_from_the_one_of_1024) {
    const Image source = Pictures::loadedImage(Pictures::noise(700, 700, 3));
    for (const Interpolation interpolation : {Interpolation::None, Interpolation::Low, Interpolation::High}) {
        const RecordingLog log;
        const auto family = IconFamily::iconFamilyWithThumbnailsOfImage(source, interpolation);
        Image master(QSizeF(1024, 1024));
        master.addRepresentation(std::make_shared<BitmapImageRep>(resampled(source, 1024, interpolation)));
        const QImage expected = resampled(master, 32, interpolation);
        const auto decoded = family->bitmapImageRepWithAlphaForIconFamilyElement("ic05");
        ASSERT_NE(decoded, nullptr);
        // The picture is opaque, so stored and drawn colours are the same.
        EXPECT_EQ(Pictures::largestDifference(*decoded->raster(), expected), 0);
    }
}

TEST(IconFamilyBuilder, a_built_family_comes_back_as_one_image_with_all_its_sizes) {
    const RecordingLog log;
    const auto family =
        IconFamily::iconFamilyWithThumbnailsOfImage(Pictures::loadedImage(Pictures::noise(64, 64, 1)));
    const Image image = family->imageWithAllReps();
    EXPECT_EQ(image.size(), QSizeF(512, 512));
    std::vector<int> sizes;
    for (const auto& representation : image.representations())
        sizes.push_back(representation->pixelSize().width());
    EXPECT_EQ(sizes, (std::vector<int>{512, 256, 128, 48, 32, 16}));
    const auto* smallest = dynamic_cast<const BitmapImageRep*>(image.representations().back().get());
    ASSERT_NE(smallest, nullptr);
    EXPECT_EQ(
        Pictures::largestDifference(*smallest->raster(),
                                    *family->bitmapImageRepWithAlphaForIconFamilyElement("ic04")->raster()),
        0)
        << "opaque";
}

TEST(IconFamilyBuilder, masks_unknown_and_broken_elements_are_no_representations) {
    EXPECT_TRUE(IconFamily::init()->imageWithAllReps().isNull());
    EXPECT_TRUE(IconFamily::initWithData("icns")->imageWithAllReps().isNull());
    const auto family = IconFamily::init();
    BitmapLayout layout;
    layout.pixelsWide = layout.pixelsHigh = 16;
    const auto bitmap = BitmapImageRep::initWithBitmapData(layout).valueOr(nullptr);
    ASSERT_TRUE(family->setIconFamilyElement("s8mk", bitmap.get()));
    EXPECT_TRUE(family->imageWithAllReps().isNull());
    ASSERT_TRUE(family->setIconFamilyElement("ic04", bitmap.get()));
    EXPECT_EQ(family->imageWithAllReps().representations().size(), 1U);
}

TEST(IconFamilyBuilder, translucent_colours_are_stored_straight_and_shown_right_by_the_reader) {
    const RecordingLog log;
    const Image source = Pictures::loadedImage(Pictures::flat(64, 64, QColor(200, 100, 50, 128)));
    const auto family = IconFamily::iconFamilyWithThumbnailsOfImage(source);
    const std::unique_ptr<BitmapImageRep> bitmap =
        family->bitmapImageRepWithAlphaForIconFamilyElement("ic04");
    ASSERT_TRUE(bitmap);
    const QByteArrayView stored = bitmap->bitmapData();
    const std::array<int, 4> expected{128, 199, 100, 50};
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_NEAR(static_cast<uchar>(stored[static_cast<qsizetype>(i)]), expected.at(i), 1);
    const Result<DecodedPicture> shown = ImageSource::decode(family->data());
    ASSERT_TRUE(shown);
    EXPECT_EQ(shown->raster.size(), QSize(512, 512));
    const QColor color = shown->raster.pixelColor(256, 256);
    EXPECT_NEAR(color.red(), 200, 2);
    EXPECT_NEAR(color.alpha(), 128, 1);
}

} // namespace

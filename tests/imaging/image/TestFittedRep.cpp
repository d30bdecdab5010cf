#include "imaging/drawing/GraphicsContext.h"
#include "imaging/image/FittedRep.h"
#include "imaging/io/ImageSource.h"
#include "imaging/pixels/Raster.h"
#include "imaging/png/PngWriter.h"
#include "tests/support/Fixtures.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using Shape = PictureFit::Shape;

const PictureFit fits[] = {{Shape::Stretch, 0.1},
                           {Shape::Contain, 0},
                           {Shape::Contain, 0.2},
                           {Shape::Cover, 0},
                           {Shape::Cover, 0.3}};

/// A picture, loaded from a PNG file for icons of these sizes.
Image loaded(const QImage& raster, const PictureFit& fit, std::vector<QSizeF> sizes) {
    return ImageSource::load(*encodePng(raster), {{std::move(sizes), fit}})->image;
}

QImage drawn(const Image& image, const QSizeF& size) {
    return *drawnRaster(image, size);
}

/// A drawing that remembers how it was drawn last.
class RememberingDrawing final : public ImageRep {
  public:
    QSize pixelSize() const override { return {}; }
    Result<QImage> rendered(AxisMapping x, AxisMapping y) const override {
        lastX = x;
        lastY = y;
        Result<QImage> raster =
            newRaster(QSize(x.targetLength, y.targetLength), QImage::Format_RGBA8888_Premultiplied);
        raster->fill(Qt::red);
        return raster;
    }
    mutable AxisMapping lastX;
    mutable AxisMapping lastY;
};

} // namespace

TEST(FittedRep, a_plain_fit_leaves_a_picture_as_it_is) {
    const Image picture = Pictures::loadedImage(Pictures::noise(40, 30, 1));
    EXPECT_EQ(fitted(picture, {}).representations(), picture.representations());
}

TEST(FittedRep, padding_draws_the_picture_as_in_a_smaller_icon) {
    const QImage source = Pictures::translucentNoise(203, 131, 2);
    for (const int side : {16, 17, 32, 101, 256}) {
        const PictureFit padded{Shape::Stretch, 0.1};
        const QRect inner = padded.place({203, 131}, QRectF(0, 0, side, side)).visible.toRect();
        const QImage icon = drawn(loaded(source, padded, {QSizeF(side, side)}), QSizeF(side, side));
        const QImage small = drawn(Pictures::loadedImage(source), inner.size());
        EXPECT_TRUE(Pictures::same(icon.copy(inner), small)) << side;
        QImage rest = icon;
        for (int y = inner.top(); y <= inner.bottom(); ++y)
            std::fill_n(rest.scanLine(y) + 4 * inner.left(), 4 * inner.width(), uchar{0});
        EXPECT_TRUE(Pictures::same(rest, Pictures::flat(side, side, Qt::transparent))) << side;
    }
}

TEST(FittedRep, a_contained_picture_leaves_two_edges_free) {
    const QImage icon =
        drawn(loaded(Pictures::flat(200, 100, Qt::blue), {Shape::Contain, 0}, {QSizeF(17, 17)}), {17, 17});
    for (int y = 0; y < 17; ++y) {
        const bool isFree = y < 4 || y > 12;
        for (int x = 0; x < 17; ++x)
            EXPECT_EQ(Pictures::pixel(icon, x, y),
                      isFree ? (Pictures::Pixel{0, 0, 0, 0}) : (Pictures::Pixel{0, 0, 255, 255}));
    }
}

TEST(FittedRep, mirrored_pictures_give_mirrored_icons) {
    for (const QSize& size : {QSize(101, 64), QSize(64, 101), QSize(37, 5), QSize(300, 299)}) {
        const QImage source = Pictures::translucentNoise(size.width(), size.height(), 3);
        for (const PictureFit& fit : fits) {
            for (const QSizeF& icon : {QSizeF(13, 13), QSizeF(32, 32), QSizeF(31, 19), QSizeF(128, 128)}) {
                const QImage plain = drawn(loaded(source, fit, {icon}), icon);
                const QImage across = drawn(loaded(Pictures::mirroredLeftRight(source), fit, {icon}), icon);
                const QImage down = drawn(loaded(Pictures::mirroredTopBottom(source), fit, {icon}), icon);
                EXPECT_TRUE(Pictures::same(across, Pictures::mirroredLeftRight(plain))) << icon.width();
                EXPECT_TRUE(Pictures::same(down, Pictures::mirroredTopBottom(plain))) << icon.width();
            }
        }
    }
}

TEST(FittedRep, what_cover_cuts_off_leaves_no_trace) {
    for (const QSize& size : {QSize(203, 101), QSize(204, 101), QSize(97, 400), QSize(1600, 700)}) {
        const QRect part = PictureFit{Shape::Cover, 0}.squarePart(size);
        const QImage source = Pictures::raster(size.width(), size.height(), [&](int x, int y) {
            return part.contains(x, y) ? QColor(Qt::blue) : QColor(Qt::yellow);
        });
        for (const double side : {1.0, 16.0, 17.0, 32.0, 50.0, 101.0, 333.0}) {
            const QImage icon = drawn(loaded(source, {Shape::Cover, 0}, {QSizeF(side, side)}), {side, side});
            const int whole = static_cast<int>(side);
            EXPECT_TRUE(Pictures::same(icon, Pictures::flat(whole, whole, Qt::blue))) << side;
        }
    }
}

TEST(FittedRep, a_covering_picture_stays_in_its_padding) {
    const QImage icon =
        drawn(loaded(Pictures::flat(300, 100, Qt::blue), {Shape::Cover, 0.25}, {QSizeF(32, 32)}), {32, 32});
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x)
            EXPECT_EQ(qAlpha(icon.pixel(x, y)), QRect(8, 8, 16, 16).contains(x, y) ? 255 : 0);
    }
}

TEST(FittedRep, icons_that_are_not_square_are_covered_and_padded_too) {
    const Image wide =
        loaded(Pictures::flat(100, 100, Qt::blue), {Shape::Cover, 0.1}, {QSizeF(300, 200), QSizeF(7, 70)});
    EXPECT_EQ(qAlpha(drawn(wide, {300, 200}).pixel(20, 20)), 255);
    EXPECT_EQ(qAlpha(drawn(wide, {300, 200}).pixel(19, 20)), 0);
    EXPECT_EQ(qAlpha(drawn(wide, {7, 70}).pixel(1, 1)), 255);
    EXPECT_EQ(qAlpha(drawn(wide, {7, 70}).pixel(0, 1)), 0);
}

TEST(FittedRep, an_icon_is_the_same_whatever_other_icons_are_made) {
    const QImage source = Pictures::translucentNoise(1100, 700, 4);
    for (const PictureFit& fit : fits) {
        for (const double side : {16.0, 29.0, 87.0, 180.0}) {
            const QSizeF size(side, side);
            const QImage alone = drawn(loaded(source, fit, {size}), size);
            const QImage amongOthers = drawn(loaded(source, fit, {{1024, 1024}, size, {1, 1}}), size);
            EXPECT_TRUE(Pictures::same(alone, amongOthers)) << side;
        }
    }
}

TEST(FittedRep, no_larger_copy_is_kept_than_the_fitted_picture_needs) {
    const auto pixels = [&](const PictureFit& fit) {
        const ReducedCopies::Renders renders({QSizeF(128, 128)}, fit);
        return ReducedCopies::largestNeeded({1024, 1024}, renders);
    };
    EXPECT_EQ(pixels({}), QSize(128, 128));
    EXPECT_EQ(pixels({Shape::Stretch, 0.125}), QSize(256, 256)) << "96 pixels of at least 192";
    EXPECT_EQ(pixels({Shape::Stretch, 0.25}), QSize(64, 64));
    EXPECT_EQ(ReducedCopies::largestNeeded({2048, 1024}, {{QSizeF(128, 128)}, {Shape::Contain, 0}}),
              QSize(128, 64));
    EXPECT_EQ(ReducedCopies::largestNeeded({2048, 1024}, {{QSizeF(128, 128)}, {Shape::Cover, 0}}),
              QSize(256, 128));
}

TEST(FittedRep, pictures_are_turned_upright_before_they_are_cut) {
    for (const char* file : {"large-orientation-6.png", "large-orientation-6-behind.png",
                             "large-orientation-5.jpg", "large.webp", "large.gif", "rgb.tif"}) {
        const QByteArray bytes = fixture(file);
        const QImage upright = *ImageSource::load(bytes)->image.largestRaster();
        for (const PictureFit& fit : fits) {
            const QSizeF size(24, 24);
            const Result<LoadedPicture> picture = ImageSource::load(bytes, {{{size}, fit}});
            ASSERT_TRUE(picture) << file;
            EXPECT_EQ(picture->size, QSizeF(upright.size())) << file;
            EXPECT_TRUE(
                Pictures::same(drawn(picture->image, size), drawn(loaded(upright, fit, {size}), size)))
                << file;
        }
    }
}

TEST(FittedRep, a_drawing_is_drawn_in_the_size_that_it_gets) {
    const auto drawing = std::make_shared<RememberingDrawing>();
    Image picture(QSizeF(20, 10));
    picture.addRepresentation(drawing);
    drawn(fitted(picture, {Shape::Contain, 0.125}), {64, 64});
    EXPECT_EQ(drawing->lastX.targetLength, 48);
    EXPECT_EQ(drawing->lastY.targetLength, 24);
    EXPECT_TRUE(drawing->lastX.origin == 0 && drawing->lastX.length == 48);
    drawn(fitted(picture, {Shape::Cover, 0.125}), {64, 64});
    EXPECT_EQ(drawing->lastX.targetLength, 48);
    EXPECT_EQ(drawing->lastX.length, 96);
    EXPECT_EQ(drawing->lastX.origin, -24);
}

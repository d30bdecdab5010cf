#include "imaging/image/FittedRep.h"
#include "layouts/LayoutRenderer.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

namespace {

using Pictures::Pixel;
using Pictures::pixel;

constexpr Color white{1, 1, 1, 1};
constexpr Color blue{0, 0, 1, 1};

LayoutFile square(double inset = 1) {
    LayoutFile file;
    file.inset = inset;
    return file;
}

LayoutPictures picturesOf(const QImage& main) {
    LayoutPictures pictures;
    pictures.main = Pictures::image(main);
    return pictures;
}

QImage rasterOf(const LayoutPictures& pictures, const LayoutFile& file, const QSize& size,
                const IconStyle& style = {}, const Color& background = white) {
    const Result<QImage> raster = LayoutRenderer(pictures, style, background).raster(file, size);
    EXPECT_TRUE(raster);
    return raster ? *raster : QImage();
}

QImage rasterOf(const LayoutPictures& pictures, const LayoutFile& file, int side, const IconStyle& style = {},
                const Color& background = white) {
    return rasterOf(pictures, file, QSize(side, side), style, background);
}

} // namespace

TEST(LayoutRenderer, an_inset_leaves_the_same_margin_on_each_side) {
    const LayoutPictures pictures = picturesOf(Pictures::flat(64, 64, Qt::red));
    for (const int side : {1, 2, 16, 17, 48, 108, 1024}) {
        for (const double inset : {1.0, 824.0 / 1024, 66.0 / 108, 0.8}) {
            LayoutFile file = square(inset);
            const int inner = LayoutRenderer::shapeSide(file, QSize(side, side));
            EXPECT_EQ((side - inner) % 2, 0);
            EXPECT_NEAR(inner, side * inset, 1.01) << side;
            const QImage raster = rasterOf(pictures, file, side);
            const int margin = (side - inner) / 2;
            for (int i = 0; i < side; ++i) {
                const int expected = i >= margin && i < side - margin ? 255 : 0;
                EXPECT_EQ(pixel(raster, i, side / 2).alpha, expected) << side << " " << i;
                EXPECT_EQ(pixel(raster, side / 2, i).alpha, expected) << side << " " << i;
            }
        }
    }
}

TEST(LayoutRenderer, a_squares_ground_reaches_the_edges) {
    const LayoutPictures pictures = picturesOf(Pictures::flat(10, 10, QColor(255, 0, 0, 128)));
    LayoutFile file = square(0.5);
    file.hasGround = true;
    const QImage raster = rasterOf(pictures, file, 20, {}, blue);
    EXPECT_EQ(pixel(raster, 0, 0), (Pixel{0, 0, 255, 255}));
    EXPECT_EQ(pixel(raster, 10, 10), (Pixel{128, 0, 127, 255}));
}

TEST(LayoutRenderer, a_circles_ground_ends_with_it) {
    const LayoutPictures pictures = picturesOf(Pictures::flat(10, 10, Qt::transparent));
    LayoutFile file = square();
    file.hasGround = true;
    file.shape = LayoutFile::Shape::Circle;
    const QImage raster = rasterOf(pictures, file, 40, {}, blue);
    EXPECT_EQ(pixel(raster, 0, 0).alpha, 0);
    EXPECT_GT(pixel(raster, 20, 0).alpha, 240);
    EXPECT_EQ(pixel(raster, 20, 20), (Pixel{0, 0, 255, 255}));
    EXPECT_TRUE(Pictures::same(raster, Pictures::mirroredLeftRight(raster)));
    EXPECT_TRUE(Pictures::same(raster, Pictures::mirroredTopBottom(raster)));
}

TEST(LayoutRenderer, a_rounded_shape_has_its_own_corners) {
    const LayoutPictures pictures = picturesOf(Pictures::flat(10, 10, Qt::red));
    LayoutFile file = square();
    file.shape = LayoutFile::Shape::Rounded;
    file.radius = 0.25;
    const QImage raster = rasterOf(pictures, file, 100);
    EXPECT_EQ(pixel(raster, 2, 2).alpha, 0);
    EXPECT_EQ(pixel(raster, 25, 0).alpha, 255);
    EXPECT_EQ(pixel(raster, 8, 8).alpha, 255);
}

TEST(LayoutRenderer, the_style_rounds_squares_and_frames_every_shape) {
    const LayoutPictures pictures = picturesOf(Pictures::flat(10, 10, Qt::red));
    const IconStyle style{true, 0.5F, true, 0.2F, blue};
    LayoutFile file = square();
    file.hasGround = true;
    const QImage raster = rasterOf(pictures, file, 50, style);
    EXPECT_EQ(pixel(raster, 0, 0), (Pixel{255, 255, 255, 255})) << "the ground behind the corner";
    EXPECT_EQ(pixel(raster, 25, 2), (Pixel{0, 0, 255, 255})) << "the border";
    EXPECT_EQ(pixel(raster, 25, 25), (Pixel{255, 0, 0, 255}));
}

TEST(LayoutRenderer, pictures_fall_back_to_the_main_one) {
    LayoutPictures pictures = picturesOf(Pictures::flat(10, 10, Qt::red));
    LayoutFile file = square();
    file.picture = LayoutPicture::Foreground;
    EXPECT_EQ(pixel(rasterOf(pictures, file, 8), 4, 4), (Pixel{255, 0, 0, 255}));
    pictures.foreground = Pictures::image(Pictures::flat(10, 10, Qt::green));
    EXPECT_EQ(pixel(rasterOf(pictures, file, 8), 4, 4), (Pixel{0, 255, 0, 255}));
    file.picture = LayoutPicture::Dark;
    EXPECT_EQ(pixel(rasterOf(pictures, file, 8), 4, 4), (Pixel{255, 0, 0, 255}));
}

TEST(LayoutRenderer, a_silhouette_has_the_shape_of_the_alpha_channel) {
    const LayoutPictures pictures = picturesOf(Pictures::raster(
        8, 8, [](int x, int) { return x < 4 ? QColor(10, 20, 30, 255) : QColor(200, 10, 10, 102); }));
    LayoutFile file = square();
    file.picture = LayoutPicture::Monochrome;
    const QImage raster = rasterOf(pictures, file, 8);
    EXPECT_EQ(pixel(raster, 0, 0), (Pixel{255, 255, 255, 255}));
    EXPECT_EQ(pixel(raster, 7, 7), (Pixel{102, 102, 102, 102}));
}

TEST(LayoutRenderer, a_silhouette_of_an_opaque_picture_is_what_differs_from_its_corners) {
    for (const auto& [ground, subject] :
         {std::pair<QColor, QColor>{Qt::white, Qt::black}, {Qt::black, Qt::white}}) {
        const LayoutPictures pictures = picturesOf(Pictures::raster(
            9, 9, [&](int x, int y) { return x > 2 && x < 6 && y > 2 && y < 6 ? subject : ground; }));
        LayoutFile file = square();
        file.picture = LayoutPicture::Monochrome;
        const QImage raster = rasterOf(pictures, file, 9);
        EXPECT_EQ(pixel(raster, 0, 0).alpha, 0);
        EXPECT_EQ(pixel(raster, 4, 4), (Pixel{255, 255, 255, 255}));
    }
}

TEST(LayoutRenderer, a_tinted_picture_is_grey_and_opaque) {
    LayoutPictures pictures = picturesOf(Pictures::raster(
        4, 4, [](int x, int) { return x < 2 ? QColor(0, 128, 0, 255) : QColor(0, 0, 0, 0); }));
    LayoutFile file = square();
    file.picture = LayoutPicture::Tinted;
    const QImage raster = rasterOf(pictures, file, 4);
    EXPECT_EQ(pixel(raster, 0, 0), (Pixel{255, 255, 255, 255}));
    EXPECT_EQ(pixel(raster, 3, 3), (Pixel{0, 0, 0, 255}));
}

TEST(LayoutRenderer, a_file_without_a_picture_is_its_ground) {
    const LayoutPictures pictures = picturesOf(Pictures::flat(10, 10, Qt::red));
    LayoutFile file = square();
    file.picture = LayoutPicture::None;
    file.hasGround = true;
    EXPECT_TRUE(Pictures::same(rasterOf(pictures, file, 30, {}, blue), Pictures::flat(30, 30, Qt::blue)));
}

TEST(LayoutRenderer, in_a_file_that_is_not_square_the_shape_is_the_square_in_the_middle) {
    const LayoutPictures pictures = picturesOf(Pictures::flat(64, 64, Qt::red));
    LayoutFile file = square(0.8);
    file.hasGround = true;
    for (const QSize& size : {QSize(310, 150), QSize(150, 310), QSize(31, 10), QSize(10, 31)}) {
        const int inner = LayoutRenderer::shapeSide(file, size);
        const QRect middle((size.width() - inner) / 2, (size.height() - inner) / 2, inner, inner);
        const QImage raster = rasterOf(pictures, file, size, {}, blue);
        ASSERT_EQ(raster.size(), size);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                const Pixel expected = middle.contains(x, y) ? Pixel{255, 0, 0, 255} : Pixel{0, 0, 255, 255};
                ASSERT_EQ(pixel(raster, x, y), expected) << x << ", " << y;
            }
        }
    }
}

TEST(LayoutRenderer, a_margin_around_an_opaque_picture_is_no_part_of_its_silhouette) {
    QImage mark = Pictures::flat(40, 40, Qt::black);
    for (int y = 10; y < 30; ++y) {
        for (int x = 10; x < 30; ++x)
            mark.setPixelColor(x, y, Qt::white);
    }
    LayoutPictures pictures;
    pictures.main = fitted(Pictures::loadedImage(mark), {PictureFit::Shape::Stretch, 0.1});
    LayoutFile file = square();
    file.picture = LayoutPicture::Monochrome;
    const QImage raster = rasterOf(pictures, file, 50);
    EXPECT_EQ(pixel(raster, 1, 1).alpha, 0) << "the margin";
    EXPECT_EQ(pixel(raster, 8, 8).alpha, 0) << "the picture's ground";
    EXPECT_EQ(pixel(raster, 25, 25).alpha, 255) << "its mark";
}

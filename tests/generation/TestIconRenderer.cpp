#include "generation/IconRenderer.h"
#include "imaging/drawing/GraphicsContext.h"
#include "imaging/io/ImageSource.h"
#include "tests/generation/FakeSurroundings.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using Pictures::Pixel;
using Pictures::pixel;

class Renderer {
  public:
    FakeInput input;
    FakeScreen screen;

    QImage operator()(const QImage& source, double width, double height) const {
        return IconRenderer(input, screen)
            .drawImage(Pictures::image(source), QSizeF(width, height))
            .largestRaster()
            .valueOr({});
    }
};

const QColor blue(20, 60, 200);
const Color white{1, 1, 1, 1};

} // namespace

TEST(IconRenderer, without_decoration_the_same_size_keeps_an_opaque_pictures_bytes) {
    const QImage source = Pictures::noise(61, 61, 1);
    EXPECT_TRUE(Pictures::same(Renderer()(source, 61, 61), source));
}

TEST(IconRenderer, without_decoration_the_same_size_keeps_a_translucent_pictures_colours) {
    // A file's straight samples are premultiplied for the drawing and made straight again for the file.
    for (int alpha = 1; alpha < 256; alpha += 2) {
        for (int c = 0; c < 256; c += 5) {
            const QImage render = Renderer()(Pictures::flat(1, 1, QColor(c, 0, 0, alpha)), 1, 1);
            const double straight = pixel(render, 0, 0).red * 255.0 / alpha;
            ASSERT_NEAR(straight, c, 255.0 / (2 * alpha) + 1) << "alpha " << alpha;
            ASSERT_EQ(pixel(render, 0, 0).alpha, alpha);
        }
    }
}

TEST(IconRenderer, the_picture_is_stretched_not_cropped_or_padded) {
    // The left half is red and the right half blue; the picture is twice as wide as high. Each half fills
    // half of a square.
    const QImage source =
        Pictures::raster(128, 64, [](int x, int) { return x < 64 ? QColor(Qt::red) : QColor(Qt::blue); });
    const QImage render = Renderer()(source, 64, 64);
    EXPECT_EQ(render.size(), QSize(64, 64));
    for (int y = 0; y < 64; y += 63) {
        EXPECT_EQ(pixel(render, 0, y), (Pixel{255, 0, 0, 255}));
        EXPECT_EQ(pixel(render, 25, y), (Pixel{255, 0, 0, 255}));
        EXPECT_EQ(pixel(render, 38, y), (Pixel{0, 0, 255, 255}));
        EXPECT_EQ(pixel(render, 63, y), (Pixel{0, 0, 255, 255}));
    }
}

TEST(IconRenderer, a_corner_of_radius_zero_equals_no_corner) {
    const QImage source = Pictures::translucentNoise(50, 50, 2);
    Renderer plain;
    Renderer rounded;
    rounded.input.style.roundCorner = true;
    rounded.input.style.cornerRadiusPercent = 0;
    for (const double side : {50.0, 33.0, 27.5})
        EXPECT_TRUE(Pictures::same(rounded(source, side, side), plain(source, side, side))) << side;
}

TEST(IconRenderer, a_radius_of_half_the_side_or_more_gives_a_circle) {
    Renderer render;
    render.input.style.roundCorner = true;
    render.input.style.cornerRadiusPercent = 0.5F;
    const QImage circle = render(Pictures::flat(100, 100, blue), 100, 100);
    render.input.style.cornerRadiusPercent = 0.9F;
    EXPECT_TRUE(Pictures::same(render(Pictures::flat(100, 100, blue), 100, 100), circle));
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 100; ++x) {
            const double radius = std::hypot(x + 0.5 - 50, y + 0.5 - 50);
            const int alpha = pixel(circle, x, y).alpha;
            // The coverage of a pixel on the edge is close to its distance from the edge.
            const double tolerance = radius < 49.2 || radius > 50.8 ? 0 : 40;
            ASSERT_NEAR(alpha, 255 * std::clamp(50.5 - radius, 0.0, 1.0), tolerance);
        }
    }
}

TEST(IconRenderer, the_corner_is_antialiased_by_its_exact_area) {
    Renderer render;
    render.input.style.roundCorner = true;
    render.input.style.cornerRadiusPercent = 0.25F;
    const QImage result = render(Pictures::flat(64, 64, Qt::white), 64, 64);
    double alphas = 0;
    int partial = 0;
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            const int alpha = pixel(result, x, y).alpha;
            alphas += alpha / 255.0;
            partial += alpha > 0 && alpha < 255 ? 1 : 0;
        }
    }
    const double corners = 4 * (1 - 3.14159265 / 4) * 16 * 16;
    EXPECT_NEAR(alphas, 64 * 64 - corners, 0.3);
    EXPECT_GT(partial, 60);
}

TEST(IconRenderer, radii_follow_width_and_height_and_the_border_the_width_alone) {
    Renderer render;
    render.input.style.roundCorner = true;
    render.input.style.cornerRadiusPercent = 0.25F;
    const QImage plain = render(Pictures::flat(8, 8, blue), 80, 40);
    // x radius 20, y radius 10: one point just outside the ellipse on its diagonal, one just inside.
    const auto isInside = [](double x, double y) { return std::hypot((x - 20) / 20, (y - 10) / 10) < 1; };
    ASSERT_TRUE(isInside(6.5, 3.5));
    ASSERT_FALSE(isInside(4.5, 1.5));
    EXPECT_EQ(pixel(plain, 6, 3).alpha, 255);
    EXPECT_EQ(pixel(plain, 4, 1).alpha, 0);
    render.input.style.roundCorner = false;
    render.input.style.border = true;
    render.input.style.borderWidth = 0.1F;
    render.input.style.borderColor = white;
    const QImage bordered = render(Pictures::flat(8, 8, blue), 80, 40);
    EXPECT_EQ(pixel(bordered, 40, 3), (Pixel{255, 255, 255, 255})) << "4 of the line's 8 pixels show";
    EXPECT_EQ(pixel(bordered, 40, 4), (Pixel{20, 60, 200, 255}));
    EXPECT_EQ(pixel(bordered, 3, 20), (Pixel{255, 255, 255, 255}));
    EXPECT_EQ(pixel(bordered, 4, 20), (Pixel{20, 60, 200, 255}));
}

TEST(IconRenderer, a_border_of_a_tenth_of_100_shows_five_pixels_along_each_edge) {
    Renderer render;
    render.input.style.border = true;
    render.input.style.borderWidth = 0.1F;
    render.input.style.borderColor = {1, 0, 0, 1};
    const QImage result = render(Pictures::flat(100, 100, blue), 100, 100);
    const Pixel red{255, 0, 0, 255};
    const Pixel picture{20, 60, 200, 255};
    for (int i = 0; i < 100; ++i) {
        for (const int edge : {0, 4, 95, 99}) {
            ASSERT_EQ(pixel(result, edge, i), red);
            ASSERT_EQ(pixel(result, i, edge), red);
        }
    }
    for (int i = 5; i < 95; ++i) {
        for (const int inside : {5, 50, 94}) {
            ASSERT_EQ(pixel(result, inside, i), picture);
            ASSERT_EQ(pixel(result, i, inside), picture);
        }
    }
}

TEST(IconRenderer, the_width_is_the_single_precision_value_widened) {
    // 0.3F is a little more than 0.3: of 100 pixels it gives 30.0000012, and half of that is visible. 0.7F is
    // a little less than 0.7.
    Renderer render;
    render.input.style.border = true;
    render.input.style.borderColor = white;
    render.input.style.borderWidth = 0.7F;
    const double half = static_cast<double>(0.7F) * 10000 / 2;
    ASSERT_LT(half, 3500 - 1e-5);
    const QImage result = render(Pictures::flat(1, 1, Qt::black), 10000, 1);
    EXPECT_EQ(pixel(result, 3498, 0).red, 255);
    EXPECT_EQ(pixel(result, 5000, 0).red, 255) << "the width follows the width, not the height";
}

TEST(IconRenderer, a_translucent_border_is_blended_over_the_picture) {
    Renderer render;
    render.input.style.border = true;
    render.input.style.borderWidth = 0.2F;
    render.input.style.borderColor = {1, 1, 1, 0.5};
    const QImage result = render(Pictures::flat(40, 40, QColor(100, 0, 0)), 40, 40);
    EXPECT_EQ(pixel(result, 1, 20), (Pixel{178, 128, 128, 255})) << "half of 100 and 255, 0 and 255";
    EXPECT_EQ(pixel(result, 20, 20), (Pixel{100, 0, 0, 255}));
}

TEST(IconRenderer, a_border_over_transparent_parts_keeps_its_own_alpha) {
    Renderer render;
    render.input.style.border = true;
    render.input.style.borderWidth = 0.2F;
    render.input.style.borderColor = {0, 1, 0, 0.5};
    const QImage result = render(Pictures::flat(40, 40, QColor(0, 0, 0, 0)), 40, 40);
    EXPECT_EQ(pixel(result, 1, 20), (Pixel{0, 128, 0, 128}));
    EXPECT_EQ(pixel(result, 20, 20), (Pixel{0, 0, 0, 0}));
}

TEST(IconRenderer, the_border_follows_the_rounded_outline_inside_the_clip) {
    Renderer render;
    render.input.style.roundCorner = true;
    render.input.style.cornerRadiusPercent = 0.5F;
    const QImage clipped = render(Pictures::flat(100, 100, blue), 100, 100);
    render.input.style.border = true;
    render.input.style.borderWidth = 0.2F;
    render.input.style.borderColor = white;
    const QImage result = render(Pictures::flat(100, 100, blue), 100, 100);
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 100; ++x) {
            const double radius = std::hypot(x + 0.5 - 50, y + 0.5 - 50);
            if (radius < 39.2) {
                ASSERT_EQ(pixel(result, x, y), (Pixel{20, 60, 200, 255}));
            }
            if (radius > 40.8 && radius < 49.2) {
                ASSERT_EQ(pixel(result, x, y), (Pixel{255, 255, 255, 255}));
            }
            // Picture and border both pass through the clip: a pixel with coverage c gets c of the picture,
            // then c of the border over it.
            const int alpha = pixel(clipped, x, y).alpha;
            if (radius > 49.2) {
                ASSERT_NEAR(pixel(result, x, y).alpha, alpha + (255 - alpha) * alpha / 255.0, 1);
            }
        }
    }
}

TEST(IconRenderer, a_hairline_border_is_as_opaque_as_it_is_wide) {
    Renderer render;
    render.input.style.border = true;
    render.input.style.borderWidth = 0.01F;
    render.input.style.borderColor = white;
    const QImage result = render(Pictures::flat(50, 50, Qt::black), 50, 50);
    // The border is half a pixel wide; a quarter of a pixel of it is visible.
    EXPECT_EQ(pixel(result, 0, 25).red, 64);
    EXPECT_EQ(pixel(result, 1, 25).red, 0);
}

TEST(IconRenderer, a_border_of_no_width_shows_nothing) {
    Renderer render;
    render.input.style.border = true;
    render.input.style.borderWidth = 0;
    render.input.style.borderColor = white;
    const QImage source = Pictures::noise(40, 40, 3);
    EXPECT_TRUE(Pictures::same(render(source, 40, 40), source));
}

TEST(IconRenderer, a_border_as_wide_as_the_icon_covers_it) {
    for (const bool isRounded : {false, true}) {
        Renderer render;
        render.input.style.roundCorner = isRounded;
        render.input.style.border = true;
        render.input.style.borderWidth = 1;
        render.input.style.borderColor = white;
        const QImage result = render(Pictures::flat(40, 40, Qt::black), 40, 40);
        EXPECT_EQ(pixel(result, 20, 20), (Pixel{255, 255, 255, 255}));
        EXPECT_EQ(pixel(result, 0, 20), (Pixel{255, 255, 255, 255}));
    }
}

TEST(IconRenderer, a_symmetric_picture_stays_symmetric_to_the_byte_with_all_decorations) {
    const QImage source = Pictures::raster(300, 300, [](int x, int y) {
        const int dx = std::min(x, 299 - x);
        const int dy = std::min(y, 299 - y);
        return QColor((dx * 7 + dy * 3) & 255, (dx * dy) & 255, (dx ^ dy) & 255, 128 + (dx & 127));
    });
    Renderer render;
    render.input.style = {true, 0.31F, true, 0.07F, {0.9, 0.4, 0.1, 0.8}};
    for (const int side : {16, 29, 87, 167, 300, 512}) {
        const IconRenderer renderer(render.input, render.screen);
        const QImage result =
            renderer.drawImage(Pictures::loadedImage(source), QSizeF(side, side)).largestRaster().valueOr({});
        EXPECT_TRUE(Pictures::same(Pictures::mirroredLeftRight(result), result)) << side;
        EXPECT_TRUE(Pictures::same(Pictures::mirroredTopBottom(result), result)) << side;
    }
}

TEST(IconRenderer, a_fractional_size_rounds_the_raster_up_and_stands_on_its_lower_left_corner) {
    const QImage result = Renderer()(Pictures::flat(64, 64, Qt::white), 27.5, 20.25);
    EXPECT_EQ(result.size(), QSize(28, 21));
    EXPECT_EQ(pixel(result, 26, 10).alpha, 255);
    EXPECT_EQ(pixel(result, 27, 10).alpha, 128);
    EXPECT_EQ(pixel(result, 10, 20).alpha, 255);
    EXPECT_EQ(pixel(result, 10, 0).alpha, 64);
    EXPECT_EQ(pixel(result, 27, 0).alpha, 32);
}

TEST(IconRenderer, rounding_noise_makes_no_pixel) {
    EXPECT_EQ(Renderer()(Pictures::flat(4, 4, Qt::white), 10.0000005, 10).size(), QSize(10, 10));
    const QImage result = Renderer()(Pictures::flat(4, 4, Qt::white), 9.9999995, 10);
    EXPECT_EQ(result.size(), QSize(10, 10));
    EXPECT_EQ(pixel(result, 9, 5).alpha, 255);
    EXPECT_EQ(Renderer()(Pictures::flat(4, 4, Qt::white), 10.00001, 10).size(), QSize(11, 10));
}

TEST(IconRenderer, the_raster_has_the_displays_scale) {
    Renderer render;
    render.screen.factor = 3;
    EXPECT_EQ(render(Pictures::flat(4, 4, Qt::white), 10, 20).size(), QSize(30, 60));
}

TEST(IconRenderer, decorations_scale_with_the_display) {
    Renderer render;
    render.input.style = {true, 0.2F, true, 0.1F, {1, 0, 0, 1}};
    const QImage atOne = render(Pictures::flat(4, 4, blue), 120, 120);
    render.screen.factor = 2;
    EXPECT_TRUE(Pictures::same(render(Pictures::flat(4, 4, blue), 60, 60), atOne));
}

TEST(IconRenderer, a_size_without_pixels_has_no_raster) {
    for (const QSizeF size : {QSizeF(0, 0), QSizeF(0, 20), QSizeF(-5, 5), QSizeF(1e-9, 1), QSizeF(NAN, 5),
                              QSizeF(INFINITY, 1), QSizeF(1e9, 1e9)}) {
        EXPECT_TRUE(Renderer()(Pictures::flat(4, 4, blue), size.width(), size.height()).isNull())
            << size.width() << "x" << size.height();
    }
}

TEST(IconRenderer, a_drawing_is_drawn_anew_at_each_size) {
    const QByteArray svg =
        "<svg xmlns='http://www.w3.org/2000/svg' width='2' height='1'>"
        "<rect width='1' height='1' fill='red'/><rect x='1' width='1' height='1' fill='blue'/></svg>";
    const Result<LoadedPicture> picture = ImageSource::load(svg);
    ASSERT_TRUE(picture);
    const FakeInput input;
    const FakeScreen screen;
    const QImage result =
        IconRenderer(input, screen).drawImage(picture->image, QSizeF(500, 500)).largestRaster().valueOr({});
    EXPECT_EQ(pixel(result, 249, 250), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(pixel(result, 250, 250), (Pixel{0, 0, 255, 255}));
    EXPECT_EQ(pixel(result, 499, 0), (Pixel{0, 0, 255, 255}));
}

TEST(IconRenderer, the_source_is_not_changed) {
    const QImage source = Pictures::noise(64, 64, 1);
    const Image image = Pictures::loadedImage(source);
    const auto before = image.representations();
    Renderer render;
    render.input.style = {true, 0.2F, true, 0.1F, {1, 0, 0, 1}};
    IconRenderer(render.input, render.screen).drawImage(image, QSizeF(64, 64));
    EXPECT_EQ(image.representations(), before);
    EXPECT_TRUE(Pictures::same(image.largestRaster().valueOr({}), source));
}

TEST(CgiImageRef, without_an_image_there_is_none) {
    EXPECT_TRUE(IconRenderer::getCgiImageRef(nullptr).isNull());
}

TEST(CgiImageRef, an_image_without_pixels_has_none) {
    const Image image(QSizeF(0, 0));
    EXPECT_TRUE(IconRenderer::getCgiImageRef(&image).isNull());
}

TEST(CgiImageRef, the_raster_passes_through_its_TIFF_unchanged) {
    for (const QSize size : {QSize(1, 1), QSize(7, 5), QSize(64, 64), QSize(513, 3)}) {
        const QImage raster = Pictures::translucentNoise(size.width(), size.height(), 6);
        const Image image = Pictures::image(raster);
        EXPECT_TRUE(Pictures::same(IconRenderer::getCgiImageRef(&image), raster));
    }
}

TEST(IconRenderer, a_border_on_a_fractional_edge_ends_with_the_picture) {
    Renderer plain;
    plain.input.style.border = true;
    plain.input.style.borderWidth = 0.2F;
    plain.input.style.borderColor = white;
    Renderer rounded;
    rounded.input.style = plain.input.style;
    rounded.input.style.roundCorner = true;
    rounded.input.style.cornerRadiusPercent = 0;
    const QImage result = plain(Pictures::flat(8, 8, Qt::black), 27.5, 27.5);
    // Half of the picture, with half of the border over it.
    EXPECT_EQ(pixel(result, 27, 14), (Pixel{128, 128, 128, 192}));
    EXPECT_TRUE(Pictures::same(rounded(Pictures::flat(8, 8, Qt::black), 27.5, 27.5), result));
}

TEST(IconRenderer, a_picture_that_cannot_be_drawn_leaves_no_empty_icon) {
    // The picture is drawn wider than a surface of the drawing library may be.
    const Result<LoadedPicture> picture = ImageSource::load(
        "<svg xmlns='http://www.w3.org/2000/svg' width='2' height='2'><rect width='2' height='2'/></svg>");
    ASSERT_TRUE(picture);
    const FakeInput input;
    const FakeScreen screen;
    EXPECT_TRUE(IconRenderer(input, screen)
                    .drawImage(picture->image, QSizeF(40000, 10))
                    .largestRaster()
                    .valueOr({})
                    .isNull());
    EXPECT_FALSE(IconRenderer(input, screen)
                     .drawImage(picture->image, QSizeF(400, 10))
                     .largestRaster()
                     .valueOr({})
                     .isNull());
}

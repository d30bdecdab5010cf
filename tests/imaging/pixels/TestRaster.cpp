#include "imaging/pixels/Raster.h"

#include <gtest/gtest.h>

namespace {

QImage part() {
    QImage raster(2, 1, QImage::Format_RGBA8888_Premultiplied);
    raster.setPixel(0, 0, qRgba(255, 0, 0, 255));
    raster.setPixel(1, 0, qRgba(0, 64, 0, 128));
    return raster;
}

} // namespace

TEST(Raster, a_placed_part_lies_on_transparent_pixels) {
    const Result<QImage> whole = placed(part(), {1, 2}, {4, 3});
    ASSERT_TRUE(whole);
    EXPECT_EQ(whole->size(), QSize(4, 3));
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 4; ++x) {
            const bool isInside = y == 2 && (x == 1 || x == 2);
            EXPECT_EQ(whole->pixel(x, y), isInside ? part().pixel(x - 1, 0) : 0) << x << ", " << y;
        }
    }
}

TEST(Raster, a_part_of_the_whole_size_is_not_copied) {
    const QImage raster = part();
    EXPECT_EQ(placed(raster, {}, raster.size())->constBits(), raster.constBits());
}

TEST(Raster, a_size_without_a_pixel_is_refused) {
    EXPECT_EQ(newRaster({0, 4}, QImage::Format_RGBA8888_Premultiplied).error().code, ErrorCode::EmptySize);
    EXPECT_EQ(placed(part(), {}, {4, 0}).error().code, ErrorCode::EmptySize);
}

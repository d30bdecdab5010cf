#include "imaging/drawing/CoverageMask.h"
#include "imaging/drawing/Path.h"

#include <QPolygonF>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

double areaOf(const CoverageMask& mask, int width, int height) {
    double area = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            area += mask.at(x, y);
    }
    return area;
}

/// The part of pixel (x, y) inside `outline`, by counting a grid of samples.
double sampled(const std::vector<QPointF>& outline, int x, int y) {
    constexpr int grid = 64;
    const QPolygonF polygon(QList<QPointF>(outline.begin(), outline.end()));
    int inside = 0;
    for (int j = 0; j < grid; ++j) {
        for (int i = 0; i < grid; ++i)
            inside +=
                polygon.containsPoint({x + (i + 0.5) / grid, y + (j + 0.5) / grid}, Qt::OddEvenFill) ? 1 : 0;
    }
    return inside / static_cast<double>(grid * grid);
}

} // namespace

TEST(CoverageMask, a_rectangle_on_whole_pixels_covers_them_fully) {
    const std::vector<QPointF> outline{{1, 2}, {4, 2}, {4, 5}, {1, 5}};
    const CoverageMask mask = CoverageMask::ofConvexPolygon(outline, 6, 6, false);
    for (int y = 0; y < 6; ++y) {
        for (int x = 0; x < 6; ++x)
            EXPECT_EQ(mask.at(x, y), x >= 1 && x < 4 && y >= 2 && y < 5 ? 1 : 0) << x << ", " << y;
    }
}

TEST(CoverageMask, fractions_of_pixels_are_their_exact_area) {
    const std::vector<QPointF> outline{{0.25, 0.5}, {2.5, 0.5}, {2.5, 2.75}, {0.25, 2.75}};
    const CoverageMask mask = CoverageMask::ofConvexPolygon(outline, 3, 3, false);
    EXPECT_DOUBLE_EQ(mask.at(0, 0), 0.75 * 0.5);
    EXPECT_DOUBLE_EQ(mask.at(1, 0), 0.5);
    EXPECT_DOUBLE_EQ(mask.at(2, 1), 0.5);
    EXPECT_DOUBLE_EQ(mask.at(1, 1), 1);
    EXPECT_DOUBLE_EQ(mask.at(2, 2), 0.5 * 0.75);
}

TEST(CoverageMask, either_orientation_gives_the_same_mask) {
    const std::vector<QPointF> outline{{1.2, 0.3}, {7.7, 2.1}, {6.4, 7.9}, {0.5, 5.5}};
    const std::vector<QPointF> reversed(outline.rbegin(), outline.rend());
    const CoverageMask a = CoverageMask::ofConvexPolygon(outline, 8, 8, false);
    const CoverageMask b = CoverageMask::ofConvexPolygon(reversed, 8, 8, false);
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 8; ++x) {
            EXPECT_NEAR(a.at(x, y), b.at(x, y), 1e-12);
            EXPECT_NEAR(a.at(x, y), sampled(outline, x, y), 0.02) << x << ", " << y;
        }
    }
}

TEST(CoverageMask, a_shape_larger_than_the_raster_covers_all_of_it) {
    const std::vector<QPointF> outline{{-5, -5}, {20, -5}, {20, 20}, {-5, 20}};
    EXPECT_EQ(areaOf(CoverageMask::ofConvexPolygon(outline, 7, 9, false), 7, 9), 63);
}

TEST(CoverageMask, nothing_covers_nothing) {
    EXPECT_EQ(areaOf(CoverageMask::ofConvexPolygon({}, 4, 4, false), 4, 4), 0);
    const std::vector<QPointF> aside{{10, 1}, {12, 1}, {12, 3}, {10, 3}};
    EXPECT_EQ(areaOf(CoverageMask::ofConvexPolygon(aside, 4, 4, false), 4, 4), 0);
}

TEST(CoverageMask, a_symmetric_shape_gives_a_symmetric_mask_to_the_last_bit) {
    for (const int side : {1, 2, 15, 16, 87, 100}) {
        const QRectF bounds(0, 0, side, side);
        const CoverageMask mask = CoverageMask::ofConvexPolygon(
            offsetOutline(bounds, side * 0.31, side * 0.22, 0), side, side, true);
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x) {
                EXPECT_EQ(mask.at(x, y), mask.at(side - 1 - x, y));
                EXPECT_EQ(mask.at(x, y), mask.at(x, side - 1 - y));
            }
        }
    }
}

TEST(Path, a_circle_has_the_area_of_a_circle) {
    for (const int side : {16, 33, 256, 1024}) {
        const std::vector<QPointF> outline =
            offsetOutline(QRectF(0, 0, side, side), side / 2.0, side / 2.0, 0);
        const double area = areaOf(CoverageMask::ofConvexPolygon(outline, side, side, true), side, side);
        EXPECT_NEAR(area, std::numbers::pi * side * side / 4, 0.003 * side) << side;
    }
}

TEST(Path, each_radius_is_limited_to_half_of_its_side) {
    const Path path = Path::bezierPathWithRoundedRect(QRectF(0, 0, 40, 20), 100, 100);
    EXPECT_EQ(path.xRadius(), 20);
    EXPECT_EQ(path.yRadius(), 10);
}

TEST(Path, a_radius_of_zero_in_either_direction_leaves_square_corners) {
    EXPECT_EQ(Path::bezierPathWithRoundedRect(QRectF(0, 0, 40, 20), 0, 5).yRadius(), 0);
    EXPECT_EQ(Path::bezierPathWithRoundedRect(QRectF(0, 0, 40, 20), 5, 0).xRadius(), 0);
}

TEST(Path, the_outline_moved_inward_keeps_its_distance) {
    // A rounded rectangle with circular corners, moved inward, stays one: each edge moves by the distance,
    // and the radius shrinks by it.
    const int side = 100;
    const QRectF bounds(0, 0, side, side);
    const CoverageMask moved =
        CoverageMask::ofConvexPolygon(offsetOutline(bounds, 30, 30, -10), side, side, true);
    const CoverageMask expected =
        CoverageMask::ofConvexPolygon(offsetOutline(QRectF(10, 10, 80, 80), 20, 20, 0), side, side, true);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            EXPECT_NEAR(moved.at(x, y), expected.at(x, y), 0.003) << x << ", " << y;
    }
}

TEST(Path, moved_inward_by_more_than_the_radius_it_has_square_corners) {
    const std::vector<QPointF> outline = offsetOutline(QRectF(0, 0, 100, 100), 10, 10, -20);
    const CoverageMask mask = CoverageMask::ofConvexPolygon(outline, 100, 100, true);
    EXPECT_NEAR(mask.at(20, 20), 1, 1e-9);
    EXPECT_NEAR(mask.at(19, 20), 0, 1e-9);
    EXPECT_NEAR(areaOf(mask, 100, 100), 60 * 60, 1e-6);
}

TEST(Path, moved_inward_by_half_of_its_side_nothing_is_left) {
    EXPECT_TRUE(offsetOutline(QRectF(0, 0, 100, 100), 30, 30, -50).empty());
    EXPECT_TRUE(offsetOutline(QRectF(0, 0, 100, 60), 0, 0, -30).empty());
}

TEST(Path, the_inner_outline_of_an_ellipse_is_nowhere_nearer_than_the_distance) {
    const QRectF bounds(0, 0, 200, 80);
    const std::vector<QPointF> outer = offsetOutline(bounds, 100, 40, 0);
    for (const double distance : {2.0, 10.0, 25.0}) {
        for (const QPointF& p : offsetOutline(bounds, 100, 40, -distance)) {
            double nearest = 1e9;
            for (std::size_t i = 0; i < outer.size(); ++i) {
                const QPointF& a = outer[i];
                const QPointF edge = outer[(i + 1) % outer.size()] - a;
                const double length = QPointF::dotProduct(edge, edge);
                const double t =
                    length > 0 ? std::clamp(QPointF::dotProduct(p - a, edge) / length, 0.0, 1.0) : 0;
                const QPointF gap = p - (a + edge * t);
                nearest = std::min(nearest, std::hypot(gap.x(), gap.y()));
            }
            EXPECT_NEAR(nearest, distance, 0.01) << p.x() << ", " << p.y();
        }
    }
}

#include "project/proof/ProofShapes.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr ProofCut allCuts[]{ProofCut::Squircle, ProofCut::Circle, ProofCut::RoundedSquare,
                             ProofCut::Teardrop};

/// The part of the square that a shape covers, counted on a large raster.
double coveredPart(ProofCut cut) {
    constexpr int side = 400;
    QImage raster(side, side, QImage::Format_ARGB32_Premultiplied);
    raster.fill(0);
    QPainter painter(&raster);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(ProofShapes::path(cut, QRectF(0, 0, side, side)), Qt::black);
    painter.end();
    double covered = 0;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            covered += qAlpha(raster.pixel(x, y)) / 255.0;
    }
    return covered / side / side;
}

} // namespace

TEST(ProofShapes, each_point_of_the_squircle_lies_on_the_superellipse) {
    for (const QPointF& point : ProofShapes::squircle()) {
        const double x = std::abs(2 * point.x() - 1);
        const double y = std::abs(2 * point.y() - 1);
        EXPECT_NEAR(std::pow(x, 5) + std::pow(y, 5), 1, 1e-9) << point.x() << ' ' << point.y();
    }
}

TEST(ProofShapes, the_squircle_touches_the_middle_of_each_side) {
    const std::vector<QPointF> points = ProofShapes::squircle();
    const std::size_t quarter = points.size() / 4;
    const QPointF middles[]{{1, 0.5}, {0.5, 1}, {0, 0.5}, {0.5, 0}};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(points[i * quarter].x(), middles[i].x(), 1e-12);
        EXPECT_NEAR(points[i * quarter].y(), middles[i].y(), 1e-12);
    }
}

TEST(ProofShapes, each_covers_its_part_of_the_square) {
    const double pi = std::acos(-1);
    const double corner = 1 - pi / 4;
    // The area of |x|⁵ + |y|⁵ ≤ 1 in its square: Γ(1 + 1/5)² ÷ Γ(1 + 2/5).
    EXPECT_NEAR(coveredPart(ProofCut::Squircle), std::pow(std::tgamma(1.2), 2) / std::tgamma(1.4), 1e-3);
    EXPECT_NEAR(coveredPart(ProofCut::Circle), pi / 4, 1e-3);
    EXPECT_NEAR(coveredPart(ProofCut::RoundedSquare), 1 - 4 * corner * 0.12 * 0.12, 1e-3);
    EXPECT_NEAR(coveredPart(ProofCut::Teardrop), 1 - corner * (3 * 0.25 + 0.15 * 0.15), 1e-3);
}

TEST(ProofShapes, only_the_lower_right_corner_of_the_teardrop_is_pointed) {
    const QPainterPath path = ProofShapes::path(ProofCut::Teardrop, QRectF(0, 0, 100, 100));
    EXPECT_TRUE(path.contains(QPointF(94, 94)));
    for (const QPointF& corner : {QPointF(6, 6), QPointF(94, 6), QPointF(6, 94)})
        EXPECT_FALSE(path.contains(corner));
}

TEST(ProofShapes, each_fills_an_oblong_too) {
    const QRectF oblong(3, 5, 70, 31);
    for (const ProofCut cut : allCuts) {
        const QRectF bounds = ProofShapes::path(cut, oblong).boundingRect();
        EXPECT_NEAR(bounds.left(), oblong.left(), 0.01);
        EXPECT_NEAR(bounds.top(), oblong.top(), 0.01);
        EXPECT_NEAR(bounds.width(), oblong.width(), 0.01);
        EXPECT_NEAR(bounds.height(), oblong.height(), 0.01);
    }
}

TEST(ProofShapes, the_ring_of_the_safe_zone_lies_in_the_middle) {
    EXPECT_EQ(ProofShapes::ring(QRectF(0, 0, 108, 108), ProofShapes::adaptiveSafe), QRectF(21, 21, 66, 66));
    EXPECT_EQ(ProofShapes::ring(QRectF(10, 0, 500, 500), ProofShapes::maskableSafe),
              QRectF(60, 50, 400, 400));
}

TEST(ProofShapes, css_gives_the_same_shapes) {
    EXPECT_EQ(ProofShapes::css(ProofCut::Circle), u"ellipse(50% 50%)"_s);
    EXPECT_EQ(ProofShapes::css(ProofCut::RoundedSquare), u"inset(0 round 12%)"_s);
    EXPECT_EQ(ProofShapes::css(ProofCut::Teardrop), u"inset(0 round 50% 50% 15% 50%)"_s);
    const QString squircle = ProofShapes::css(ProofCut::Squircle);
    EXPECT_TRUE(squircle.startsWith(u"polygon(100% 50%,"_s)) << squircle.toStdString();
    EXPECT_EQ(squircle.count(u','), static_cast<qsizetype>(ProofShapes::squircle().size()) - 1);
}

#include "imaging/drawing/Path.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

/// A point of the corner in the quadrant of positive coordinates, seen from the shape's middle, with its
/// outward unit normal. The points of a corner's quarter ellipse go from the right side round to the bottom.
struct CornerPoint {
    QPointF position;
    QPointF normal;
};

constexpr double flatness = 1e-3;

std::vector<CornerPoint> flattenedCorner(double halfWidth, double halfHeight, double xRadius,
                                         double yRadius) {
    const double largest = std::max(xRadius, yRadius);
    const double step = std::sqrt(8 * flatness / std::max(largest, 8 * flatness));
    const int pieces = std::max(2, static_cast<int>(std::ceil(std::numbers::pi / 2 / step)));
    std::vector<CornerPoint> corner;
    corner.reserve(static_cast<std::size_t>(pieces) + 1);
    for (int i = 0; i <= pieces; ++i) {
        // The ends are set exactly; sin and cos of a quarter turn are not exact.
        const double angle = std::numbers::pi / 2 * i / pieces;
        const double c = i == pieces ? 0 : std::cos(angle);
        const double s = i == 0 ? 0 : i == pieces ? 1 : std::sin(angle);
        const double length = std::hypot(yRadius * c, xRadius * s);
        corner.push_back({{halfWidth - xRadius + xRadius * c, halfHeight - yRadius + yRadius * s},
                          {yRadius * c / length, xRadius * s / length}});
    }
    return corner;
}

/// The convex polygon `points` without the part beyond the line through `on`. `normal` is the line's outward
/// normal.
std::vector<QPointF> cutBeyond(const std::vector<QPointF>& points, const QPointF& on, const QPointF& normal) {
    std::vector<QPointF> kept;
    kept.reserve(points.size() + 1);
    const auto distance = [&](const QPointF& p) { return QPointF::dotProduct(p - on, normal); };
    for (std::size_t i = 0; i < points.size(); ++i) {
        const QPointF& a = points[i];
        const QPointF& b = points[(i + 1) % points.size()];
        const double da = distance(a);
        const double db = distance(b);
        if (da <= 0)
            kept.push_back(a);
        if ((da < 0 && db > 0) || (da > 0 && db < 0))
            kept.push_back(a + (b - a) * (da / (da - db)));
    }
    return kept;
}

/// The quadrant of the shape's outline moved inward by `distance`: the part of the quadrant that lies inside
/// every tangent after the tangent has been moved. Where a shape has two mirror axes, the nearest point of
/// the outline lies in the same quadrant, so each quadrant can be eroded alone.
std::vector<QPointF> erodedQuadrant(const std::vector<CornerPoint>& corner, double halfWidth,
                                    double halfHeight, double distance) {
    std::vector<QPointF> quadrant{{0, 0},
                                  {halfWidth - distance, 0},
                                  {halfWidth - distance, halfHeight - distance},
                                  {0, halfHeight - distance}};
    for (const CornerPoint& point : corner) {
        quadrant = cutBeyond(quadrant, point.position - point.normal * distance, point.normal);
        if (quadrant.size() < 3)
            return {};
    }
    // From the right side round to the bottom, without the point in the middle of the shape.
    std::erase_if(quadrant, [](const QPointF& p) { return p.x() <= 0 && p.y() <= 0; });
    std::ranges::sort(quadrant, [](const QPointF& a, const QPointF& b) {
        return std::atan2(a.y(), a.x()) < std::atan2(b.y(), b.x());
    });
    return quadrant;
}

/// The outline of all four quadrants, mirrored from the quadrant of positive coordinates and moved to
/// `centre`.
std::vector<QPointF> mirrored(const std::vector<QPointF>& quadrant, const QPointF& centre) {
    std::vector<QPointF> outline;
    outline.reserve(4 * quadrant.size());
    const auto add = [&](const QPointF& p, double signX, double signY) {
        outline.emplace_back(centre.x() + signX * p.x(), centre.y() + signY * p.y());
    };
    const std::vector<QPointF> backwards(quadrant.rbegin(), quadrant.rend());
    for (const QPointF& p : quadrant)
        add(p, 1, 1);
    for (const QPointF& p : backwards)
        add(p, -1, 1);
    for (const QPointF& p : quadrant)
        add(p, -1, -1);
    for (const QPointF& p : backwards)
        add(p, 1, -1);
    return outline;
}

} // namespace

Path Path::bezierPathWithRect(const QRectF& rect) {
    return Path(rect);
}

Path Path::bezierPathWithRoundedRect(const QRectF& rect, double xRadius, double yRadius) {
    Path path(rect);
    const double x = std::min(xRadius, rect.width() / 2);
    const double y = std::min(yRadius, rect.height() / 2);
    if (x > 0 && y > 0) {
        path.m_xRadius = x;
        path.m_yRadius = y;
    }
    return path;
}

Path Path::bezierPathWithOvalInRect(const QRectF& rect) {
    return bezierPathWithRoundedRect(rect, rect.width() / 2, rect.height() / 2);
}

namespace {

double lineWidthAtBirth = 1;

} // namespace

double Path::defaultLineWidth() {
    return lineWidthAtBirth;
}

void Path::setDefaultLineWidth(double width) {
    lineWidthAtBirth = width;
}

QPainterPath Path::painterPath() const {
    QPainterPath path;
    if (m_xRadius > 0)
        path.addRoundedRect(m_bounds, m_xRadius, m_yRadius);
    else
        path.addRect(m_bounds);
    return path;
}

std::vector<QPointF> offsetOutline(const QRectF& bounds, double xRadius, double yRadius, double distance) {
    const double halfWidth = bounds.width() / 2;
    const double halfHeight = bounds.height() / 2;
    if (halfWidth + distance <= 0 || halfHeight + distance <= 0)
        return {};
    if (xRadius <= 0 || yRadius <= 0) {
        const QRectF moved = bounds.adjusted(-distance, -distance, distance, distance);
        return {moved.topLeft(), moved.topRight(), moved.bottomRight(), moved.bottomLeft()};
    }
    const std::vector<CornerPoint> corner = flattenedCorner(halfWidth, halfHeight, xRadius, yRadius);
    if (distance < 0)
        return mirrored(erodedQuadrant(corner, halfWidth, halfHeight, -distance), bounds.center());
    std::vector<QPointF> quadrant;
    quadrant.reserve(corner.size());
    for (const CornerPoint& point : corner)
        quadrant.push_back(point.position + point.normal * distance);
    return mirrored(quadrant, bounds.center());
}

#pragma once

#include "imaging/drawing/CoverageMask.h"

#include <QPainterPath>
#include <QPointF>
#include <QRectF>

#include <vector>

/// The outline of a rectangle or rounded rectangle, in points, with the width that it is stroked with.
class Path {
  public:
    static Path bezierPathWithRect(const QRectF& rect);

    /// A rounded rectangle whose corners are quarters of ellipses. Each radius is limited to half of its
    /// side; where one of them is 0 or less the corners are square.
    static Path bezierPathWithRoundedRect(const QRectF& rect, double xRadius, double yRadius);

    /// The ellipse inscribed in `rect`.
    static Path bezierPathWithOvalInRect(const QRectF& rect);

    const QRectF& bounds() const { return m_bounds; }
    double xRadius() const { return m_xRadius; }
    double yRadius() const { return m_yRadius; }

    /// In points. The stroke is centred on the outline. A width of 0 or less strokes nothing.
    double lineWidth() const { return m_lineWidth; }
    void setLineWidth(double width) { m_lineWidth = width; }

    /// The line width of new paths in the whole process; 1 at first.
    static double defaultLineWidth();
    static void setDefaultLineWidth(double width);

    /// The outline for Qt's painter. In a picture, GraphicsContext draws it more exactly.
    QPainterPath painterPath() const;

  private:
    explicit Path(const QRectF& bounds) : m_bounds(bounds), m_lineWidth(defaultLineWidth()) {}

    QRectF m_bounds;
    double m_xRadius = 0;
    double m_yRadius = 0;
    double m_lineWidth;
};

/// A path's outline moved outward by `distance` (inward where negative), as a convex polygon. Its points lie
/// at exactly that distance from the outline; curves are flattened to within a thousandth of a unit. Square
/// corners stay square. With distance 0 it is the outline itself. Empty where nothing is left. For this room
/// alone: may throw std::bad_alloc.
std::vector<QPointF> offsetOutline(const QRectF& bounds, double xRadius, double yRadius, double distance);

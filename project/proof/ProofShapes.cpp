#include "project/proof/ProofShapes.h"

#include <QPolygonF>
#include <QStringList>

#include <array>
#include <cmath>
#include <numbers>

std::vector<QPointF> ProofShapes::squircle() {
    constexpr int piecesOfQuadrant = 24;
    std::vector<QPointF> quadrant;
    for (int i = 0; i < piecesOfQuadrant; ++i) {
        const double angle = std::numbers::pi / 2 * i / piecesOfQuadrant;
        quadrant.emplace_back(std::pow(std::cos(angle), 2 / squircleExponent) / 2,
                              i == 0 ? 0 : std::pow(std::sin(angle), 2 / squircleExponent) / 2);
    }
    // Each quadrant is the one before, turned by a quarter.
    std::vector<QPointF> outline;
    for (int turn = 0; turn < 4; ++turn) {
        for (QPointF& point : quadrant) {
            outline.emplace_back(0.5 + point.x(), 0.5 + point.y());
            point = {-point.y(), point.x()};
        }
    }
    return outline;
}

QString ProofShapes::name(ProofCut cut) {
    switch (cut) {
    case ProofCut::Squircle:
        return QStringLiteral("squircle");
    case ProofCut::Circle:
        return QStringLiteral("circle");
    case ProofCut::RoundedSquare:
        return QStringLiteral("rounded square");
    case ProofCut::Teardrop:
        break;
    }
    return QStringLiteral("teardrop");
}

namespace {

QPainterPath squirclePath(const QRectF& rect) {
    QPolygonF polygon;
    for (const QPointF& point : ProofShapes::squircle())
        polygon << QPointF(rect.x() + point.x() * rect.width(), rect.y() + point.y() * rect.height());
    QPainterPath path;
    path.addPolygon(polygon);
    path.closeSubpath();
    return path;
}

/// A rectangle whose corners are quarters of ellipses: three of half the sides, and the lower right one.
QPainterPath teardropPath(const QRectF& rect) {
    const double w = rect.width();
    const double h = rect.height();
    const QSizeF corner(w * ProofShapes::teardropRadius * 2, h * ProofShapes::teardropRadius * 2);
    QPainterPath path;
    path.moveTo(rect.left() + w / 2, rect.top());
    path.arcTo(rect, 90, -90);
    path.arcTo(QRectF(rect.bottomRight() - QPointF(corner.width(), corner.height()), corner), 0, -90);
    path.lineTo(rect.left() + w / 2, rect.bottom());
    path.arcTo(rect, 270, -180);
    path.closeSubpath();
    return path;
}

QString percent(double part) {
    return QString::number(part * 100, 'g', 5) + u'%';
}

} // namespace

QPainterPath ProofShapes::path(ProofCut cut, const QRectF& rect) {
    QPainterPath path;
    switch (cut) {
    case ProofCut::Squircle:
        return squirclePath(rect);
    case ProofCut::Circle:
        path.addEllipse(rect);
        break;
    case ProofCut::RoundedSquare:
        path.addRoundedRect(rect, rect.width() * roundedRadius, rect.height() * roundedRadius);
        break;
    case ProofCut::Teardrop:
        return teardropPath(rect);
    }
    return path;
}

QString ProofShapes::css(ProofCut cut) {
    switch (cut) {
    case ProofCut::Squircle: {
        QStringList points;
        for (const QPointF& point : squircle())
            points << percent(point.x()) + u' ' + percent(point.y());
        return QStringLiteral("polygon(%1)").arg(points.join(u','));
    }
    case ProofCut::Circle:
        return QStringLiteral("ellipse(50% 50%)");
    case ProofCut::RoundedSquare:
        return QStringLiteral("inset(0 round %1)").arg(percent(roundedRadius));
    case ProofCut::Teardrop:
        break;
    }
    return QStringLiteral("inset(0 round 50% 50% %1 50%)").arg(percent(teardropRadius));
}

QRectF ProofShapes::ring(const QRectF& rect, double part) {
    QRectF ring(QPointF(), rect.size() * part);
    ring.moveCenter(rect.center());
    return ring;
}

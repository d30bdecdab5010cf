#include "mainwindow/TetraSliderCell.h"

#include "imaging/drawing/Shadow.h"
#include "platform/widgets/QtColor.h"
#include "platform/widgets/SliderCellStyle.h"

#include <QLinearGradient>
#include <QPainter>

#include <cmath>

namespace {

constexpr Color knobOutline{0, 0, 0, 0.172};
constexpr Color knobStart{1, 1, 1, 0.759};
constexpr Color knobEnd{0.4, 0.451, 0.581, 1};
constexpr Color knobDotFill{0, 0, 0, 0.2};
constexpr Color trackOutline{0, 0, 0, 0.415};
constexpr Color trackStart{0.101, 0.1, 0.1, 1};
constexpr Color trackMiddle{0.154, 0.154, 0.154, 1};
constexpr Color trackEnd{0.175, 0.175, 0.175, 1};

Shadow dropShadow() {
    return {{0.324, 0.324, 0.324, 1}, {0.1, -1.1}, 0};
}

Shadow innerShadow() {
    return {{0, 0, 0, 0.376}, {0.1, 0.1}, 5};
}

double nearest(double value) {
    return std::floor(value + 0.5);
}

/// The distance of the circle from the left edge of the knob's rectangle. The circle is not in the
/// rectangle's middle.
double knobOffset(double width) {
    return std::floor((nearest(width) - 12) * 0.78333 + 0.5);
}

double knobBase(const QRectF& rect) {
    return rect.y() + std::floor((rect.height() - 12) * 0.5 + 0.5);
}

QPainterPath oval(const QRectF& rect) {
    QPainterPath path;
    path.addEllipse(rect);
    return path;
}

QPainterPath trackPath(const QRectF& rect) {
    QPainterPath path;
    path.addRoundedRect(rect, 2.5, 2.5);
    return path;
}

QLinearGradient trackGradient(const QPointF& from, const QPointF& to) {
    QLinearGradient gradient(from, to);
    gradient.setColorAt(0, toQColor(trackStart));
    gradient.setColorAt(0.5, toQColor(trackMiddle));
    gradient.setColorAt(1, toQColor(trackEnd));
    return gradient;
}

void strokePath(QPainter& painter, const QPainterPath& path, const Color& color) {
    painter.strokePath(path, QPen(toQColor(color), 1));
}

} // namespace

QRectF TetraSliderCell::knobCircle(const QRectF& knobRect) {
    return {knobRect.x() + knobOffset(knobRect.width()) + 0.5, knobBase(knobRect) + 0.5, 11, 11};
}

QRectF TetraSliderCell::knobDot(const QRectF& knobRect) {
    return {knobRect.x() + knobOffset(knobRect.width()) + 4.5, knobBase(knobRect) + 4.5, 3, 3};
}

QRectF TetraSliderCell::track(const QRectF& barRect) {
    return {barRect.x() + 1, barRect.y() + std::floor((barRect.height() - 12) * 0.5 + 0.5) + 3,
            nearest(barRect.width()) - 2, 5};
}

QRectF TetraSliderCell::innerShadowFrame(const QRectF& trackRect) {
    const Shadow shadow = innerShadow();
    const double blur = shadow.blurRadius;
    return trackRect.adjusted(-blur, -blur, blur, blur)
        .translated(-shadow.offset.x(), shadow.offset.y())
        .united(trackRect)
        .adjusted(-1, -1, 1, 1);
}

void TetraSliderCell::drawKnob(QPainter& painter, const QRectF& knobRect) {
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF rect = knobCircle(knobRect);
    const QPainterPath circle = oval(rect);
    const double reach = rect.height() * 5.73 / 11;
    QLinearGradient gradient(rect.center() - QPointF(0, reach), rect.center() + QPointF(0, reach));
    // The gradient goes between the components as they are given, not multiplied by alpha.
    gradient.setInterpolationMode(QGradient::ComponentInterpolation);
    gradient.setColorAt(0, toQColor(knobStart));
    gradient.setColorAt(1, toQColor(knobEnd));
    painter.fillPath(circle, gradient);
    strokePath(painter, circle, knobOutline);

    const QPainterPath dot = oval(knobDot(knobRect));
    painter.fillPath(dot, toQColor(knobDotFill));
    strokePath(painter, dot, knobOutline);
}

void TetraSliderCell::drawBarInside(QPainter& painter, const QRectF& barRect, bool /*flipped*/) {
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF rect = track(barRect);

    // The track as one layer, with its shadow behind it.
    const QPainterPath outer = trackPath(rect);
    QPainterPath everywhere;
    everywhere.addRect(rect.adjusted(-4, -4, 4, 4));
    // A slider does without its shadows where memory is short.
    static_cast<void>(drawShadow(painter, outer, dropShadow(), everywhere));
    painter.fillPath(outer, trackGradient(rect.topLeft(), rect.topLeft() + QPointF(0, rect.height())));

    const QPainterPath body = trackPath(rect);
    const double reach = rect.height() * 2.5 / 5;
    painter.fillPath(body,
                     trackGradient(rect.center() - QPointF(0, reach), rect.center() + QPointF(0, reach)));

    // The frame is moved aside, out of the track. Its shadow is thrown back into the track.
    Shadow inner = innerShadow();
    const QRectF frame = innerShadowFrame(rect);
    const double aside = std::round(frame.width());
    const double x = inner.offset.x() + aside;
    inner.offset = {x + std::copysign(0.1, x), inner.offset.y() + std::copysign(0.1, inner.offset.y())};
    QPainterPath negative;
    negative.setFillRule(Qt::OddEvenFill);
    negative.addRect(frame);
    negative.addPath(body);
    static_cast<void>(drawShadow(painter, negative.translated(-aside, 0), inner, body));

    strokePath(painter, body, trackOutline);
}

TetraSlider::TetraSlider(QWidget* parent) : FloatSlider(parent) {
    auto* style = new SliderCellStyle(std::make_unique<TetraSliderCell>());
    style->setParent(this);
    setStyle(style);
}

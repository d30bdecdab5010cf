#pragma once

#include <QRectF>

class QPainter;

/// Draws the two parts of a slider, bar and knob. Coordinates have y upward.
class SliderCell {
  public:
    virtual ~SliderCell() = default;

    /// The side of the knob's square and the height of the bar, in points.
    static constexpr int knobSize = 12;

    virtual void drawKnob(QPainter& painter, const QRectF& knobRect) = 0;
    virtual void drawBarInside(QPainter& painter, const QRectF& barRect, bool flipped) = 0;

    /// The part of `barRect` that the bar's body covers.
    virtual QRectF barBody(const QRectF& barRect) const = 0;
};

#pragma once

#include <QRectF>

class QPainter;

/// Draws a slider's two parts, in coordinates with y upward.
class SliderCell {
  public:
    virtual ~SliderCell() = default;

    /// Side of the square that the knob is drawn in, and height of the bar, in points.
    static constexpr int knobSize = 12;

    virtual void drawKnob(QPainter& painter, const QRectF& knobRect) = 0;
    virtual void drawBarInside(QPainter& painter, const QRectF& barRect, bool flipped) = 0;
};

#pragma once

#include "platform/widgets/FloatSlider.h"
#include "platform/widgets/SliderCell.h"

#include <QPainterPath>

/// A dark, shadowed track 5 points high, and a round knob of 11 points with a dot in it. The slider's value
/// does not change their look. Coordinates have y upward.
class TetraSliderCell final : public SliderCell {
  public:
    /// The drawing does not read it: a pressed knob looks like any other.
    bool isPressed = false;

    void drawKnob(QPainter& painter, const QRectF& knobRect) override;
    /// `flipped` is ignored.
    void drawBarInside(QPainter& painter, const QRectF& barRect, bool flipped) override;
    QRectF barBody(const QRectF& barRect) const override { return track(barRect); }

    // Where the parts are drawn, in points.
    static QRectF knobCircle(const QRectF& knobRect);
    static QRectF knobDot(const QRectF& knobRect);
    static QRectF track(const QRectF& barRect);
    /// The frame that throws the inner shadow, before it is moved aside. It surrounds the track; its hole is
    /// the track.
    static QRectF innerShadowFrame(const QRectF& trackRect);
};

/// A slider that TetraSliderCell draws.
class TetraSlider final : public FloatSlider {
    Q_OBJECT

  public:
    explicit TetraSlider(QWidget* parent = nullptr);
};

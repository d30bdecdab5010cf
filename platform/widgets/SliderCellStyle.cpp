#include "platform/widgets/SliderCellStyle.h"

#include "platform/widgets/Contrast.h"

#include <QPainter>
#include <QStyleOptionSlider>
#include <QWidget>

#include <cmath>

namespace {

/// In points: room for the shadows, and enough height to click at.
constexpr int controlHeight = 22;
constexpr double disabledOpacity = 0.5;

/// A bar is dark. On a dark window it lies on a lighter ground, a little larger than the bar.
void drawGround(QPainter& painter, const QRectF& bar, const QPalette& palette) {
    constexpr double margin = 2;
    const QRectF ground = bar.adjusted(-1, -margin, 1, margin);
    painter.setPen(Qt::NoPen);
    painter.setBrush(edgeColor(palette));
    painter.drawRoundedRect(ground, ground.height() / 2, ground.height() / 2);
}

} // namespace

QRect SliderCellStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                      SubControl part, const QWidget* widget) const {
    const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_Slider || slider == nullptr)
        return QProxyStyle::subControlRect(control, option, part, widget);
    const int top = slider->rect.top() + (slider->rect.height() - SliderCell::knobSize) / 2;
    if (part == SC_SliderGroove)
        return {slider->rect.left(), top, slider->rect.width(), SliderCell::knobSize};
    if (part == SC_SliderHandle) {
        const int left =
            sliderPositionFromValue(slider->minimum, slider->maximum, slider->sliderPosition,
                                    slider->rect.width() - SliderCell::knobSize, slider->upsideDown);
        return {slider->rect.left() + left, top, SliderCell::knobSize, SliderCell::knobSize};
    }
    return {};
}

int SliderCellStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                                 const QWidget* widget) const {
    switch (metric) {
    case PM_SliderLength:
        return SliderCell::knobSize;
    case PM_SliderThickness:
    case PM_SliderControlThickness:
        return controlHeight;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

void SliderCellStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                         QPainter* painter, const QWidget* widget) const {
    if (control != CC_Slider) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    // The cell draws into an image of its own, with one pixel for each display pixel.
    const double scale = widget != nullptr ? widget->devicePixelRatioF() : 1;
    QImage drawing(QSize(static_cast<int>(std::ceil(option->rect.width() * scale)),
                         static_cast<int>(std::ceil(option->rect.height() * scale))),
                   QImage::Format_ARGB32_Premultiplied);
    drawing.setDevicePixelRatio(scale);
    drawing.fill(0);
    QPainter upward(&drawing);
    upward.setRenderHint(QPainter::Antialiasing);
    upward.translate(-option->rect.left(), option->rect.top() + option->rect.height());
    upward.scale(1, -1);
    const auto turned = [&](const QRect& rect) {
        return QRectF(rect.x(), option->rect.top() + option->rect.bottom() + 1 - rect.y() - rect.height(),
                      rect.width(), rect.height());
    };
    const QRectF knob = turned(subControlRect(control, option, SC_SliderHandle, widget));
    const QRectF bar = turned(subControlRect(control, option, SC_SliderGroove, widget));
    if (isDark(option->palette))
        drawGround(upward, m_cell->barBody(bar), option->palette);
    m_cell->drawBarInside(upward, bar, false);
    m_cell->drawKnob(upward, knob);
    if (option->state.testFlag(State_HasFocus)) {
        upward.setPen(QPen(option->palette.color(QPalette::Highlight), 2));
        upward.setBrush(Qt::NoBrush);
        // The ring stays inside of the knob's square. At an end of the range the slider ends where the square
        // ends.
        upward.drawEllipse(knob.adjusted(1, 1, -1, -1));
    }
    upward.end();
    painter->save();
    if (!option->state.testFlag(State_Enabled))
        painter->setOpacity(disabledOpacity);
    painter->drawImage(option->rect.topLeft(), drawing);
    painter->restore();
}

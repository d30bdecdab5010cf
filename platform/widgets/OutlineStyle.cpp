#include "platform/widgets/OutlineStyle.h"

#include "platform/widgets/Contrast.h"
#include "platform/widgets/QtColor.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionButton>
#include <QWidget>

#include <algorithm>

namespace {

QColor edge(const QStyleOption& option) {
    if (!option.state.testFlag(QStyle::State_Enabled))
        return mixed(edgeColor(option.palette), option.palette.color(QPalette::Window), 0.5);
    const bool hasFocus = option.state.testFlag(QStyle::State_HasFocus) &&
                          option.state.testFlag(QStyle::State_KeyboardFocusChange);
    return hasFocus ? option.palette.color(QPalette::Highlight) : edgeColor(option.palette);
}

/// The rectangle whose outline, one point wide, covers the outermost points of `rect`.
QRectF outlined(const QRect& rect) {
    return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
}

void drawEdge(QPainter& painter, const QStyleOption& option) {
    constexpr double radius = 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(edge(option), 1));
    painter.drawRoundedRect(outlined(option.rect), radius, radius);
    painter.restore();
}

/// A hook, or a bar for a box that is neither on nor off, in a square of 14 points.
QPainterPath mark(bool isBar) {
    QPainterPath path;
    if (isBar) {
        path.moveTo(4, 7);
        path.lineTo(10, 7);
    } else {
        path.moveTo(3.5, 7.2);
        path.lineTo(6, 9.7);
        path.lineTo(10.5, 4.6);
    }
    return path;
}

void drawCheckBox(QPainter& painter, const QStyleOption& option) {
    constexpr double radius = 3;
    constexpr double markSquare = 14;
    const QPalette& colors = option.palette;
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    const bool isBar = option.state.testFlag(QStyle::State_NoChange);
    const bool isMarked = isBar || option.state.testFlag(QStyle::State_On);
    const QColor accent = isEnabled ? colors.color(QPalette::Highlight) : edge(option);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isPointedAt = isEnabled && option.state.testFlag(QStyle::State_MouseOver);
    painter.setPen(QPen(isMarked || isPointedAt ? accent : edge(option), 1));
    painter.setBrush(isMarked    ? accent
                     : isEnabled ? colors.color(QPalette::Base)
                                 : colors.color(QPalette::Window));
    painter.drawRoundedRect(outlined(option.rect), radius, radius);
    if (isMarked) {
        painter.translate(option.rect.topLeft());
        painter.scale(option.rect.width() / markSquare, option.rect.height() / markSquare);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(colors.color(isEnabled ? QPalette::HighlightedText : QPalette::Window), 1.8,
                            Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(mark(isBar));
    }
    painter.restore();
}

} // namespace

bool OutlineStyle::isQtsOwn() const {
    return baseStyle()->name() == QStringLiteral("fusion");
}

int OutlineStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    const int usual = QProxyStyle::pixelMetric(metric, option, widget);
    const bool isBox = metric == PM_IndicatorWidth || metric == PM_IndicatorHeight;
    if (!isBox || widget == nullptr || !isQtsOwn())
        return usual;
    // A box is as high as the capital letters beside it.
    return std::max(usual, widget->fontMetrics().capHeight());
}

int OutlineStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returned) const {
    // Qt's own pictures for buttons are dark, and can't be seen on dark buttons.
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons && isQtsOwn())
        return 0;
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

void OutlineStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    if (element == PE_IndicatorCheckBox && isQtsOwn()) {
        drawCheckBox(*painter, *option);
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (!isQtsOwn())
        return;
    // A combo box is drawn as such a button.
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    const bool isFlat = button != nullptr && button->features.testFlag(QStyleOptionButton::Flat);
    // The frame of a list, of a text of several lines, or of what is scrolled.
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    const bool isFrame = element == PE_Frame && frame != nullptr && frame->lineWidth > 0;
    if ((element == PE_PanelButtonCommand && !isFlat) || element == PE_FrameLineEdit || isFrame)
        drawEdge(*painter, *option);
}

void OutlineStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                      QPainter* painter, const QWidget* widget) const {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_SpinBox && isQtsOwn())
        drawEdge(*painter, *option);
}

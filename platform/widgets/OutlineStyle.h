#pragma once

#include <QProxyStyle>

/// Gives the controls of Qt's own style edges that can be seen on any ground, and draws check boxes. Styles
/// of desktops draw their controls themselves.
class OutlineStyle final : public QProxyStyle {
    Q_OBJECT

  public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;

  private:
    bool isQtsOwn() const;
};

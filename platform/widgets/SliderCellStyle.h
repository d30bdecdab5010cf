#pragma once

#include "platform/widgets/SliderCell.h"

#include <QProxyStyle>

#include <memory>

/// Lets a cell draw a horizontal slider, and tells the slider where its parts are. The base style does
/// everything else.
class SliderCellStyle final : public QProxyStyle {
    Q_OBJECT

  public:
    explicit SliderCellStyle(std::unique_ptr<SliderCell> cell) : m_cell(std::move(cell)) {}

    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;

  private:
    std::unique_ptr<SliderCell> m_cell;
};

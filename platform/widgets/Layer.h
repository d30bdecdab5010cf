#pragma once

#include "base/Color.h"

#include <QRect>
#include <QWidget>

#include <functional>
#include <optional>

class QPainter;

/// The background, the border and the rounded corners of a widget. Lengths are in points. Every setter asks
/// the widget to be drawn again.
class Layer {
  public:
    explicit Layer(QWidget& view) : m_view(view) {}

    /// 0 or less gives square corners. A radius of more than half a side is drawn as half a side.
    double cornerRadius() const { return m_cornerRadius; }
    void setCornerRadius(double radius);

    /// Whether the rounded corners cut the widget's drawing too, and not the background alone.
    bool masksToBounds() const { return m_masksToBounds; }
    void setMasksToBounds(bool masks);

    const std::optional<Color>& backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(const std::optional<Color>& color);

    /// The border lies inside the bounds, over the drawing.
    const std::optional<Color>& borderColor() const { return m_borderColor; }
    void setBorderColor(const std::optional<Color>& color);
    double borderWidth() const { return m_borderWidth; }
    void setBorderWidth(double width);

    /// Draws the part `dirty` of the widget, from its paint event: background, `content`, border.
    void draw(const QRect& dirty, const std::function<void(QPainter&)>& content) const;

  private:
    void drawParts(QPainter& painter, const std::function<void(QPainter&)>& content) const;

    QWidget& m_view;
    double m_cornerRadius = 0;
    bool m_masksToBounds = false;
    std::optional<Color> m_backgroundColor;
    std::optional<Color> m_borderColor;
    double m_borderWidth = 0;
};

#pragma once

#include <QGraphicsEffect>

/// Cuts a widget, with everything in it, along a rounded rectangle, antialiased at any display scale.
class RoundedClip final : public QGraphicsEffect {
    Q_OBJECT

  public:
    /// `radius` is in points.
    explicit RoundedClip(double radius) : m_radius(radius) {}

    double radius() const { return m_radius; }

  protected:
    void draw(QPainter* painter) override;

  private:
    double m_radius;
};

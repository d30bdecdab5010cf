#pragma once

#include "base/Color.h"

#include <QPainterPath>
#include <QPointF>

class QPainter;

/// What a shape throws on what lies behind it.
struct Shadow {
    Color color;
    QPointF offset;        ///< in points of the painter's coordinates
    double blurRadius = 0; ///< in points: twice the standard deviation of a Gaussian blur
};

/// Draws the shadow that `shape`, filled, throws inside of `clip`; not the shape itself. Both edges are
/// antialiased, and the blur is made for the pixels of the painter's device. Nothing is kept.
void drawShadow(QPainter& painter, const QPainterPath& shape, const Shadow& shadow, const QPainterPath& clip);

#pragma once

#include "base/Color.h"
#include "base/Result.h"

#include <QPainterPath>
#include <QPointF>

class QPainter;

/// The shadow that a shape throws on its background.
struct Shadow {
    Color color;
    QPointF offset;        ///< in points of the painter's coordinates
    double blurRadius = 0; ///< in points: twice the standard deviation of a Gaussian blur
};

/// Draws the shadow that the filled `shape` throws inside of `clip`, without the shape itself. The edges of
/// shadow and clip are antialiased. The blur is made for the pixels of the painter's device, and is not kept.
/// OutOfMemory is the only error; nothing is drawn then.
Result<Done> drawShadow(QPainter& painter, const QPainterPath& shape, const Shadow& shadow,
                        const QPainterPath& clip);

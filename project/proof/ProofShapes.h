#pragma once

#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QString>

#include <vector>

/// A shape that a system cuts icons to.
enum class ProofCut {
    Squircle,      ///< iPhone and iPad
    Circle,        ///< Apple Watch, Android
    RoundedSquare, ///< Android
    Teardrop,      ///< Android
};

namespace ProofShapes {

/// The squircle is the superellipse |x|ⁿ + |y|ⁿ = 1.
inline constexpr double squircleExponent = 5;
/// The radius of the rounded square's corners, and of the teardrop's lower right corner, as parts of the
/// side. Source: the icon masks of the Android Open Source Project.
inline constexpr double roundedRadius = 0.12;
inline constexpr double teardropRadius = 0.15;

/// Of 108 units of an adaptive layer, launchers show 72, and never cut a circle of 66.
/// Source: "Adaptive icons", developer.android.com.
inline constexpr double adaptiveCut = 72.0 / 108;
inline constexpr double adaptiveSafe = 66.0 / 108;
/// The diameter of a maskable icon's safe zone. Source: W3C, "Web Application Manifest", icon masks.
inline constexpr double maskableSafe = 0.8;

/// The squircle in a square of side 1, from the middle of its right side on, clockwise.
std::vector<QPointF> squircle();

/// The word for a shape.
QString name(ProofCut cut);

/// The shape that fills `rect`.
QPainterPath path(ProofCut cut, const QRectF& rect);

/// The shape as a value of the CSS property clip-path.
QString css(ProofCut cut);

/// The ellipse in the middle of `rect` that takes this part of its sides.
QRectF ring(const QRectF& rect, double part);

} // namespace ProofShapes

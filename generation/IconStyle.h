#pragma once

#include "base/Color.h"

/// The decoration of every icon of a set.
struct IconStyle {
    bool roundCorner = false;
    /// A fraction of the side, despite its name: the corner's x radius is this value times the width, its y
    /// radius this value times the height. From 0.5 on the shape is an ellipse.
    float cornerRadiusPercent = 0.22F;
    bool border = false;
    /// A fraction of the width. The stroke is centred on the outline, so only its inner half is visible.
    float borderWidth = 0.05F;
    Color borderColor{0.2, 0.2, 0.2, 1};

    /// Whether any corner is cut.
    bool hasRoundCorners() const { return roundCorner && cornerRadiusPercent > 0; }

    bool operator==(const IconStyle&) const = default;
};

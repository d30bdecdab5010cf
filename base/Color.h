#pragma once

/// A calibrated RGB colour with straight alpha, components from 0 to 1.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    bool operator==(const Color&) const = default;
};

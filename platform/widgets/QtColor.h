#pragma once

#include "base/Color.h"

#include <QColor>
#include <QRgba64>

#include <cmath>

/// Colours of 8 or 16 bits per component survive both conversions, `toQColor` and `fromQColor`, without a
/// loss.
inline QColor toQColor(const Color& color) {
    const auto component = [](double value) {
        return static_cast<quint16>(std::lround(qBound(0.0, value, 1.0) * 65535));
    };
    return QColor::fromRgba64(component(color.red), component(color.green), component(color.blue),
                              component(color.alpha));
}

inline Color fromQColor(const QColor& color) {
    const QRgba64 components = color.rgba64();
    return {components.red() / 65535.0, components.green() / 65535.0, components.blue() / 65535.0,
            components.alpha() / 65535.0};
}

/// `color` mixed with `ground`, both opaque. `share` is the part of `color`, from 0 to 1.
inline QColor mixed(const QColor& color, const QColor& ground, double share) {
    const auto component = [share](int a, int b) {
        return static_cast<int>(std::lround(share * a + (1 - share) * b));
    };
    return {component(color.red(), ground.red()), component(color.green(), ground.green()),
            component(color.blue(), ground.blue())};
}

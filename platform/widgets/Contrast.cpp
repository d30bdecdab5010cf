#include "platform/widgets/Contrast.h"

#include "platform/widgets/QtColor.h"

#include <algorithm>
#include <cmath>

namespace {

double luminance(const QColor& color) {
    const auto linear = [](float component) {
        const double value = component;
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

} // namespace

double contrastRatio(const QColor& a, const QColor& b) {
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Active, QPalette::Window).lightness() <
           palette.color(QPalette::Active, QPalette::WindowText).lightness();
}

QColor edgeColor(const QPalette& palette, QPalette::ColorRole ground) {
    return mixed(palette.color(QPalette::Active, QPalette::WindowText),
                 palette.color(QPalette::Active, ground), 0.5);
}

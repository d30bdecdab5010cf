#include "cli/text/ColorText.h"

#include <QColor>

#include <algorithm>
#include <array>
#include <charconv>

namespace {

constexpr double full = 255;

std::optional<Color> hexColor(const std::string& digits) {
    std::string all = digits;
    if (digits.size() == 3) {
        all.clear();
        for (const char digit : digits)
            all.append(2, digit);
    }
    if (all.size() == 6)
        all += "ff";
    if (all.size() != 8)
        return std::nullopt;
    std::array<double, 4> parts{};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        unsigned value = 0;
        const char* start = all.data() + 2 * i;
        const auto [end, error] = std::from_chars(start, start + 2, value, 16);
        if (error != std::errc() || end != start + 2)
            return std::nullopt;
        parts[i] = value / full;
    }
    return Color{parts[0], parts[1], parts[2], parts[3]};
}

} // namespace

std::optional<Color> colorFromText(const std::string& text) {
    if (text.starts_with('#'))
        return hexColor(text.substr(1));
    const QString name = QString::fromStdString(text).toLower();
    if (!QColor::colorNames().contains(name))
        return std::nullopt;
    const QColor color(name);
    return Color{color.red() / full, color.green() / full, color.blue() / full, color.alpha() / full};
}

std::vector<std::string> colorNames() {
    std::vector<std::string> names;
    for (const QString& name : QColor::colorNames())
        names.push_back(name.toStdString());
    return names;
}

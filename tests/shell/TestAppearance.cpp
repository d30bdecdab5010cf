#include "shell/Appearance.h"
#include "tests/support/Events.h"

#include <QApplication>
#include <QPalette>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

/// Relative luminance and contrast ratio as in the Web Content Accessibility Guidelines 2.1.
double luminance(const QColor& color) {
    const auto linear = [](double v) {
        return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
    const auto [low, high] = std::minmax({luminance(a), luminance(b)});
    return (high + 0.05) / (low + 0.05);
}

QPalette desktop(const QColor& ground, const QColor& text) {
    QPalette colors(ground);
    for (const QPalette::ColorRole role : {QPalette::Window, QPalette::Base, QPalette::Button})
        colors.setColor(role, ground);
    for (const QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        colors.setColor(role, text);
        colors.setColor(QPalette::Disabled, role, ground);
    }
    return colors;
}

void expectReadable(const QPalette& colors) {
    const std::vector<std::pair<QPalette::ColorRole, QPalette::ColorRole>> pairs{
        {QPalette::WindowText, QPalette::Window},
        {QPalette::Text, QPalette::Base},
        {QPalette::ButtonText, QPalette::Button}};
    for (const auto& [text, ground] : pairs) {
        const double enabled = contrast(colors.color(text), colors.color(ground));
        const double disabled = contrast(colors.color(QPalette::Disabled, text), colors.color(ground));
        EXPECT_GE(disabled, 3) << "can be read";
        EXPECT_LT(disabled, enabled * 0.7) << "and looks disabled";
    }
}

TEST(Appearance, what_is_disabled_can_be_read_on_light_and_dark_desktops) {
    for (const QPalette& colors :
         {desktop(QColor(239, 239, 239), Qt::black), desktop(QColor(42, 46, 50), QColor(239, 240, 241))}) {
        const QPalette result = Appearance::over(colors).resolve(colors);
        expectReadable(result);
        for (const QPalette::ColorRole role : {QPalette::Window, QPalette::WindowText, QPalette::Highlight})
            EXPECT_EQ(result.color(role), colors.color(role)) << "the desktop's own";
    }
}

TEST(Appearance, lays_its_colours_over_those_of_the_application) {
    const QPalette before = QApplication::palette();
    const Appearance appearance(*qApp);
    Events::settle();
    expectReadable(QApplication::palette());
    // The desktop's palette changes while the program runs.
    QApplication::setPalette(QPalette());
    Events::settle();
    expectReadable(QApplication::palette());
    EXPECT_EQ(QApplication::palette().color(QPalette::Window), before.color(QPalette::Window));
}

} // namespace

#include "platform/widgets/QtColor.h"
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

const std::vector<std::pair<QPalette::ColorRole, QPalette::ColorRole>> pairs{
    {QPalette::WindowText, QPalette::Window},
    {QPalette::Text, QPalette::Base},
    {QPalette::Text, QPalette::AlternateBase},
    {QPalette::ButtonText, QPalette::Button},
    {QPalette::ToolTipText, QPalette::ToolTipBase},
    {QPalette::PlaceholderText, QPalette::Base},
    // The well's placeholder, the captions, and the text of item views.
    {QPalette::Text, QPalette::Window},
    {QPalette::WindowText, QPalette::Base},
    {QPalette::HighlightedText, QPalette::Highlight},
    {QPalette::Link, QPalette::Window}};

void expectReadable(const QPalette& colors) {
    for (const auto& [text, ground] : pairs) {
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
            EXPECT_GE(contrast(colors.color(group, text), colors.color(group, ground)), 4.5)
                << text << " on " << ground;
    }
    for (const QPalette::ColorRole text : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        const QPalette::ColorRole ground = text == QPalette::WindowText ? QPalette::Window
                                           : text == QPalette::Text     ? QPalette::Base
                                                                        : QPalette::Button;
        const double enabled = contrast(colors.color(text), colors.color(ground));
        const double disabled = contrast(colors.color(QPalette::Disabled, text), colors.color(ground));
        EXPECT_GE(disabled, 3) << "can be read";
        EXPECT_LT(disabled, enabled * 0.7) << "and looks disabled";
    }
}

TEST(Appearance, text_can_be_read_on_light_and_dark_desktops) {
    for (const QPalette& colors :
         {desktop(QColor(239, 239, 239), Qt::black), desktop(QColor(42, 46, 50), QColor(239, 240, 241))}) {
        const QPalette result = Appearance::over(colors).resolve(colors);
        expectReadable(result);
        // The ring around the focus has the colour Highlight.
        for (const QPalette::ColorRole ground : {QPalette::Window, QPalette::Base})
            EXPECT_GE(contrast(result.color(QPalette::Highlight), result.color(ground)), 3);
        // The captions of the preview strip.
        EXPECT_GE(contrast(mixed(result.color(QPalette::WindowText), result.color(QPalette::Window), 0.8),
                           result.color(QPalette::Window)),
                  4.5);
    }
}

TEST(Appearance, follows_the_desktop_from_light_to_dark) {
    const QColor light = Appearance::over(desktop(Qt::white, Qt::black)).color(QPalette::Window);
    const QColor dark = Appearance::over(desktop(Qt::black, Qt::white)).color(QPalette::Window);
    EXPECT_GT(light.lightness(), 200);
    EXPECT_LT(dark.lightness(), 60);
}

TEST(Appearance, lays_its_colours_over_those_of_the_application) {
    const Appearance appearance(*qApp);
    Events::settle();
    const QPalette result = QApplication::palette();
    expectReadable(result);
    // The desktop's palette changes while the program runs.
    QApplication::setPalette(QPalette());
    Events::settle();
    EXPECT_EQ(QApplication::palette(), result);
}

} // namespace

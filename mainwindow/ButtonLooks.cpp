#include "mainwindow/ButtonLooks.h"

#include <algorithm>
#include <span>

namespace {

constexpr Color white{1, 1, 1, 1};

constexpr Color rgb(int red, int green, int blue, double alpha = 1) {
    return {red / 255.0, green / 255.0, blue / 255.0, alpha};
}

constexpr std::optional<Color> noColor;
constexpr std::optional<double> noNumber;

// clang-format off
constexpr ButtonLookRow defaultLook[] = {
    {101, true,  ButtonPicture::Normal, noColor,                 1.0,      noColor,         noNumber, false, noColor,         1},
    {102, false, ButtonPicture::Normal, noColor,                 noNumber, noColor,         noNumber, false, noColor,         0},
    {103, true,  ButtonPicture::Normal, noColor,                 1.0,      noColor,         noNumber, false, noColor,         1},
    {104, true,  ButtonPicture::Normal, rgb(16, 16, 16),         1.0,      rgb(24, 27, 27), 2.0,      false, noColor,         1},
    {105, true,  ButtonPicture::Normal, noColor,                 1.0,      noColor,         noNumber, false, rgb(30, 30, 30), 1},
    {106, true,  ButtonPicture::None,   rgb(205, 205, 205),      4.0,      noColor,         noNumber, true,  rgb(30, 30, 30), 1},
    {107, true,  ButtonPicture::None,   rgb(167, 166, 165, 0.5), 4.0,      noColor,         noNumber, true,  white,           1},
    {108, true,  ButtonPicture::None,   rgb(57, 57, 58),         4.0,      noColor,         noNumber, true,  white,           1},
};

constexpr ButtonLookRow highlightedLook[] = {
    {101, true,  ButtonPicture::Selected, noColor,                 1.0,      noColor,         noNumber, false, noColor,         1},
    {102, false, ButtonPicture::Selected, noColor,                 noNumber, noColor,         noNumber, false, noColor,         0},
    {103, true,  ButtonPicture::Selected, noColor,                 1.0,      noColor,         noNumber, false, noColor,         1},
    {104, true,  ButtonPicture::Selected, rgb(20, 20, 20),         1.0,      rgb(34, 37, 37), 2.0,      true,  noColor,         1},
    {105, true,  ButtonPicture::Selected, noColor,                 1.0,      noColor,         noNumber, false, rgb(30, 30, 30), 1},
    {106, true,  ButtonPicture::None,     rgb(180, 180, 180),      4.0,      noColor,         noNumber, true,  rgb(30, 30, 30), 2},
    {107, true,  ButtonPicture::None,     rgb(187, 186, 185, 0.5), 4.0,      noColor,         noNumber, true,  white,           2},
    {108, true,  ButtonPicture::None,     rgb(67, 67, 68),         4.0,      noColor,         noNumber, true,  white,           2},
};

constexpr ButtonLookRow disabledLook[] = {
    {102, false, ButtonPicture::Selected, noColor, noNumber, noColor, noNumber, false, noColor, 0},
    {103, true,  ButtonPicture::Selected, noColor, 4.0,      noColor, noNumber, false, noColor, 1},
    {107, true,  ButtonPicture::Selected, noColor, 4.0,      noColor, noNumber, false, noColor, 1},
};
// clang-format on

std::span<const ButtonLookRow> tableOf(ButtonLook look) {
    switch (look) {
    case ButtonLook::Default:
        return defaultLook;
    case ButtonLook::Highlighted:
        return highlightedLook;
    default:
        return disabledLook;
    }
}

} // namespace

const ButtonLookRow* rowOf(ButtonLook look, int tag) {
    const std::span<const ButtonLookRow> table = tableOf(look);
    const auto found = std::ranges::find(table, tag, &ButtonLookRow::tag);
    return found != table.end() ? &*found : nullptr;
}

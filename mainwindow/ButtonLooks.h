#pragma once

#include "base/Color.h"

#include <optional>

enum class ButtonLook { Default, Highlighted, Disabled };

enum class ButtonPicture { Normal, Selected, None };

/// What a look makes of the buttons with a tag. A member without a value leaves the button as it is.
// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding)
struct ButtonLookRow {
    int tag;
    bool wantsLayer;
    ButtonPicture picture;
    std::optional<Color> background;
    std::optional<double> cornerRadius;
    std::optional<Color> borderColor;
    std::optional<double> borderWidth;
    bool hasRegularFont;
    std::optional<Color> foreground;
    int timesTitleIsSet; ///< 2: before the row's font and colour are applied, and after
};

/// The row of `tag` in the table of `look`, or null.
const ButtonLookRow* rowOf(ButtonLook look, int tag);

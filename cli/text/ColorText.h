#pragma once

#include "base/Color.h"

#include <optional>
#include <string>
#include <vector>

/// The colour that `text` names: #RGB, #RRGGBB, #RRGGBBAA or one of `colorNames()`, in any letter case.
std::optional<Color> colorFromText(const std::string& text);

/// The SVG 1.0 colour names.
std::vector<std::string> colorNames();

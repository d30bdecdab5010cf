#pragma once

#include <cstdint>
#include <string_view>

namespace Fonts {

/// Of lists of font families, a line each with tabs between the names, those of which no family is installed:
/// bit 0 is the first list. Lists beyond the 64th are not looked at.
std::uint64_t missing(std::string_view lists);

} // namespace Fonts

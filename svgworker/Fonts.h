#pragma once

#include <string>

namespace Fonts {

/// The fonts that texts have asked for in vain since the last call, a line each. Of a list of families of
/// which none is installed it is the first, also where any font of a kind, such as sans-serif, stands behind
/// it. Each is told once.
std::string takeMissing();

} // namespace Fonts

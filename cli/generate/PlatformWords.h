#pragma once

#include "cli/text/OptionText.h"
#include "generation/Platforms.h"

#include <optional>
#include <string>
#include <vector>

/// The words of --platform.
namespace PlatformWords {

/// All words, in the order of generation.
std::vector<std::string> names();

/// For the help text: "iphone, ipad, universal (iphone and ipad), … or all".
std::string text();

/// The platforms of the typed words, each once; all of them without a word.
Parsed<std::vector<Platform>> platforms(const std::vector<std::string>& typed);

/// What is wrong with the first picture that is none: a platform behind another one, as in "--platform mac
/// android".
std::optional<UsageError> stray(const std::vector<std::string>& pictures);

} // namespace PlatformWords

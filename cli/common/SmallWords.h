#pragma once

#include "cli/common/PictureLoading.h"
#include "cli/text/OptionText.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

/// The option for pictures of small icons, as typed.
struct SmallWords {
    std::vector<std::string> small;

    /// Adds the option to `command`.
    void addTo(CLI::App& command);

    /// The pictures of the typed option.
    Parsed<std::vector<SmallPicture>> pictures() const;
};

#pragma once

#include "cli/OptionText.h"
#include "generation/IconStyle.h"

#include <CLI/CLI.hpp>

#include <string>

/// The options of a command that decorates icons, as they are typed.
struct StyleWords {
    std::string roundCorner;
    std::string border;
    std::string borderColor;

    /// Adds the options to `command`.
    void addTo(CLI::App& command);

    /// The style that they ask for.
    Parsed<IconStyle> style(const CLI::App& command) const;
};

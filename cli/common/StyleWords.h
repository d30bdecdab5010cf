#pragma once

#include "cli/text/OptionText.h"
#include "generation/IconStyle.h"

#include <CLI/CLI.hpp>

#include <string>

/// The style options of a command, as typed.
struct StyleWords {
    std::string roundCorner;
    std::string border;
    std::string borderColor;

    /// Adds the options to `command`.
    void addTo(CLI::App& command);

    /// The style of the typed options.
    Parsed<IconStyle> style(const CLI::App& command) const;
};

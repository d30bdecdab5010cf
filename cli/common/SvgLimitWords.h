#pragma once

#include "cli/text/OptionText.h"

#include <CLI/CLI.hpp>

#include <string>

/// The option for how long an SVG picture may take, as typed.
struct SvgLimitWords {
    std::string limit;

    /// Adds the option to `command`.
    void addTo(CLI::App& command);

    /// In seconds; `standard` where the option was not given.
    Parsed<double> seconds(const CLI::App& command, double standard) const;
};

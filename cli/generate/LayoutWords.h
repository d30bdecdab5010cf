#pragma once

#include "cli/generate/GenerateOptions.h"
#include "cli/text/OptionText.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

/// The options of `generate` about layouts, as typed.
struct LayoutWords {
    std::vector<std::string> layouts;
    std::string background;
    std::string name;
    std::string dark;
    std::string tinted;
    std::string foreground;
    std::string monochrome;

    /// The built-in layouts.
    static std::vector<std::string> names();

    /// Whether `word` is the name of a built-in layout, in any letter case.
    static bool isName(const std::string& word);

    /// The built-in layout's name where `word` is one in other letter case; else `word`.
    static std::string known(const std::string& word);

    /// Adds the options to `command`.
    void addTo(CLI::App& command);

    /// Puts what was typed into `options`. Returns what is wrong with it, if anything is.
    std::optional<UsageError> addTo(GenerateOptions& options, const CLI::App& command) const;
};

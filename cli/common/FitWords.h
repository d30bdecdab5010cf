#pragma once

#include "cli/text/OptionText.h"
#include "imaging/pixels/PictureFit.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

/// The options of a command that say how a picture lies on its icon, as typed.
struct FitWords {
    std::string fit;
    std::string padding;

    /// The words of --fit, in the order of PictureFit::Shape.
    static const std::vector<std::string>& names();

    /// Adds the options to `command`.
    void addTo(CLI::App& command);

    /// The fit of the typed options.
    Parsed<PictureFit> pictureFit(const CLI::App& command) const;
};

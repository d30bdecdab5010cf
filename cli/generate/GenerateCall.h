#pragma once

#include "cli/generate/GenerateRun.h"

#include <vector>

/// What one call of `generate` makes.
struct GenerateCall {
    std::vector<GenerateRun> runs; ///< at least one
    std::optional<QString> opened; ///< the folder of several runs to open afterwards

    /// Makes all sets and prints the results in their order. Returns the exit status: 1 if any of several
    /// failed.
    int make() const;
};

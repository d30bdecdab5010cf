#pragma once

#include "cli/generate/GenerateRun.h"

#include <vector>

/// What one call of `generate` makes.
struct GenerateCall {
    std::vector<GenerateRun> runs; ///< at least one
    QStringList opened;            ///< the folders of several runs to open afterwards

    static GenerateCall of(std::vector<GenerateRun> runs);

    /// Makes all sets and prints the results in their order. Returns the exit status: 1 if any of several
    /// failed.
    int make() const;
};

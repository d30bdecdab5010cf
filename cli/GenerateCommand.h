#pragma once

#include "cli/GenerateOptions.h"

/// Writes the icon sets and reports. Returns the exit status: 0 where all was written, 1 otherwise.
int runGenerate(const GenerateOptions& options);

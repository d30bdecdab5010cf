#pragma once

#include "cli/GenerateOptions.h"

/// Writes the icon sets and reports on them. Returns the exit status: 0 if all was written, 1 otherwise.
int runGenerate(const GenerateOptions& options);

#pragma once

#include "cli/generate/GenerateOptions.h"

/// Writes the icon sets and reports on them. Returns the exit status: 0 if all was written, 1 otherwise.
int runGenerate(const GenerateOptions& options);

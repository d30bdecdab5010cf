#pragma once

#include "cli/generate/GenerateOptions.h"

/// Writes the layouts' files and reports on them. Returns the exit status: 0 if all was written, 1 otherwise;
/// 2 where a layout is not there or can't be used.
int runGenerateLayouts(const GenerateOptions& options);

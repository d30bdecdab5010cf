#pragma once

#include "base/Result.h"
#include "cli/generate/GenerateOptions.h"

/// Writes the layouts' files and reports on them. Returns the exit status: 0 if all was written, 1 otherwise;
/// 2 where a layout is not there or can't be used.
int runGenerateLayouts(const GenerateOptions& options);

/// The files that the layouts may write, relative to the output folder. The error of a layout that can't be
/// used.
Result<QStringList> layoutPaths(const GenerateOptions& options);

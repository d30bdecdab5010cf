#pragma once

#include "base/Result.h"
#include "cli/generate/GenerateReport.h"

/// The folder that a generation writes into.
namespace OutputTarget {

/// Fails if nothing can be written below `out`. `out` may be missing. If it is, its nearest existing parent
/// must be a folder that can be written to; else `out` itself must be one.
Result<Done> check(const QString& out);

/// Opens the folder in the file browser, without waiting. Warns if that fails.
void open(const QString& out, GenerateReport& report);

} // namespace OutputTarget

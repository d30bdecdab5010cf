#pragma once

#include "cli/generate/GenerateReport.h"

#include <optional>

/// The folder that a generation writes into.
namespace OutputTarget {

/// The reason why nothing can be written below `out`, if there is one. `out` may be missing. If it is, its
/// nearest existing parent must be a folder that can be written to; else `out` itself must be one.
std::optional<QString> error(const QString& out);

/// Opens the folder in the file browser, without waiting. Warns if that fails.
void open(const QString& out, GenerateReport& report);

} // namespace OutputTarget

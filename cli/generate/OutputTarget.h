#pragma once

#include "cli/generate/GenerateReport.h"

/// The folder that a generation writes into.
namespace OutputTarget {

/// Opens the folder in the file browser, without waiting. Warns if that fails.
void open(const QString& out, GenerateReport& report);

} // namespace OutputTarget

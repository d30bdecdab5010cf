#pragma once

#include "cli/generate/GenerateRun.h"

#include <QString>

#include <functional>
#include <set>

/// Makes sets again whenever a file changes that they are made from.
namespace GenerateWatch {

/// The files that a run reads: its pictures, its catalogue, its own layouts.
std::set<QString> inputs(const GenerateOptions& options);

/// Calls `make` now and after each change of the files that it reads, until the program is interrupted. It
/// returns these files; `known` are those that are known before. Returns the exit status 0.
int run(const std::set<QString>& known, const std::function<std::set<QString>()>& make, bool isQuiet);

} // namespace GenerateWatch

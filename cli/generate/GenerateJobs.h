#pragma once

#include "cli/generate/RunResults.h"

/// The runs of one call, spread over processes.
namespace GenerateJobs {

/// Makes each set in one of `count` processes and hands over the results.
void run(const std::vector<GenerateRun>& runs, int count, RunResults& results);

/// What such a process does, until it has no more to do.
void serve();

} // namespace GenerateJobs

#include "cli/generate/GenerateCall.h"

#include "cli/generate/OutputTarget.h"
#include "cli/generate/RunResults.h"

int GenerateCall::make() const {
    if (runs.size() == 1)
        return GenerateRuns::make(runs.front().options);
    RunResults results(runs);
    for (std::size_t i = 0; i < runs.size(); ++i)
        results.add(i, RunResult::of([&] { return GenerateRuns::make(runs[i].options); }));
    const int exitStatus = results.finish();
    if (opened) {
        GenerateReport report(runs.front().options);
        OutputTarget::open(*opened, report);
    }
    return exitStatus;
}

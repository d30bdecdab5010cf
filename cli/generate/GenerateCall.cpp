#include "cli/generate/GenerateCall.h"

#include "cli/generate/GenerateJobs.h"
#include "cli/generate/OutputTarget.h"
#include "cli/generate/RunResults.h"

#include <QThread>

int GenerateCall::make() const {
    if (runs.size() == 1)
        return GenerateRuns::make(runs.front().options);
    RunResults results(runs);
    const int wanted = runs.front().options.jobs;
    const int count = wanted > 0 ? wanted : QThread::idealThreadCount();
    if (count > 1)
        GenerateJobs::run(runs, count, results);
    for (std::size_t i = 0; count <= 1 && i < runs.size(); ++i)
        results.add(i, RunResult::of(runs[i].options));
    const int exitStatus = results.finish();
    if (opened) {
        GenerateReport report(runs.front().options);
        OutputTarget::open(*opened, report);
    }
    return exitStatus;
}

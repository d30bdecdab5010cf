#include "cli/generate/GenerateCall.h"

#include "cli/generate/GenerateJobs.h"
#include "cli/generate/OutputTarget.h"
#include "cli/generate/RunResults.h"

#include <QThread>

GenerateCall GenerateCall::of(std::vector<GenerateRun> runs) {
    GenerateCall call{std::move(runs), {}};
    if (call.runs.size() == 1)
        return call;
    for (GenerateRun& run : call.runs) {
        if (run.options.open && !call.opened.contains(run.folder))
            call.opened << run.folder;
        run.options.open = false;
        run.options.isOneOfSeveral = true;
    }
    return call;
}

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
    for (const QString& folder : opened) {
        GenerateReport report(runs.front().options);
        OutputTarget::open(folder, report);
    }
    return exitStatus;
}

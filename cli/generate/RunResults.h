#pragma once

#include "base/Result.h"
#include "cli/generate/GenerateRun.h"
#include "cli/text/Terminal.h"

#include <QByteArray>

#include <map>
#include <vector>

/// What one run of several printed, and its exit status.
struct RunResult {
    int exitStatus = 1;
    QByteArray output;
    QByteArray errors;

    /// Makes the set, and keeps what is printed.
    static RunResult of(const GenerateOptions& options);

    /// The result of a run that could not even begin, or came to no end.
    static RunResult failed(const GenerateOptions& options, const Error& error);
};

/// Prints the results of several runs in the order of the runs, whichever is ready first, and shows how many
/// are done.
class RunResults {
  public:
    explicit RunResults(const std::vector<GenerateRun>& runs);

    /// Adds the result of the run at that index.
    void add(std::size_t index, RunResult result);

    /// Prints what is left and returns the exit status of all.
    int finish();

  private:
    void print(const RunResult& result);

    bool m_isJson;
    std::map<std::size_t, RunResult> m_waiting;
    std::size_t m_printed = 0;
    bool m_isFailed = false;
    bool m_isWritten = true;
    Terminal::ProgressBar m_progress;
};

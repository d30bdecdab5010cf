#pragma once

#include "base/Result.h"

#include <QByteArray>

#include <cstddef>
#include <functional>
#include <vector>

/// Spreads jobs over processes of this program. A job and its answer are bytes; each process does many jobs.
namespace JobProcesses {

/// The only word on the command line of a process that does jobs.
inline constexpr char word[] = "--do-jobs";

/// Called with the index of a job that ended, in any order. An Error where the process ended in the job.
using Done = std::function<void(std::size_t job, Result<QByteArray> answer)>;

/// Does all jobs in at most `count` processes at a time, and waits for them. A process that ends in a job is
/// replaced by another one.
void run(const std::vector<QByteArray>& jobs, int count, const Done& done);

/// Whether this process was started by `run`.
bool isStartedHere(int argc, const char* const* argv);

/// Does the jobs that come in until there are no more. Where the system allows it, the process ends as soon
/// as the one that started it does.
void serve(const std::function<QByteArray(const QByteArray& job)>& work);

} // namespace JobProcesses

#pragma once

#include "cli/generate/ComparedPlace.h"
#include "cli/generate/GenerateOptions.h"
#include "cli/generate/GenerateReport.h"
#include "cli/generate/PlannedPlace.h"
#include "cli/generate/TarPlace.h"

#include <unistd.h>

/// Where a run puts its files, by its options: onto the disk, into a tar stream on standard output, or
/// nowhere.
class GeneratePlace {
  public:
    explicit GeneratePlace(const GenerateOptions& options) : m_options(options) {}

    OutputPlace& place();

    /// Fails if nothing can be put there.
    Result<Done> check() const;

    /// Ends the run, and tells the report what came of it.
    void finish(GenerateReport& report);

  private:
    const GenerateOptions& m_options;
    ComparedPlace m_compared;
    PlannedPlace m_planned;
    TarPlace m_tar{STDOUT_FILENO};
};

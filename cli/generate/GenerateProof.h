#pragma once

#include "cli/generate/GenerateOptions.h"
#include "cli/generate/GenerateReport.h"
#include "layouts/LayoutWriter.h"

#include <span>

/// Writes the proof sheet of what `report` knows to be written, and reports on it. Nothing is written where
/// no icon was.
namespace GenerateProof {

void ofPlatforms(const GenerateOptions& options, GenerateReport& report);

void ofLayouts(const GenerateOptions& options, std::span<const Layout> layouts, const LayoutInput& input,
               GenerateReport& report);

} // namespace GenerateProof

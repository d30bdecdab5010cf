#pragma once

#include "cli/generate/GenerateOptions.h"
#include "generation/GenerationPlan.h"

#include <QStringList>

#include <vector>

/// Warnings about what stores refuse and what systems do to icons themselves, each with the way out. They are
/// about the icons as the options make them.
namespace SetWarnings {

/// About the platforms' plain sets, of which `files` are written.
QStringList ofPlatforms(const GenerateOptions& options, const std::vector<PlannedFile>& files);

} // namespace SetWarnings

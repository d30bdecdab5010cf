#pragma once

#include "base/Result.h"
#include "cli/generate/GenerateRun.h"
#include "project/ProjectFile.h"

#include <vector>

/// The runs of a project file in the current folder.
namespace ProjectRuns {

/// Whether there is such a file.
bool isFileThere();

/// The runs of all sets. `keys` are those of the file, whose options are named "--KEY"; "picture" is
/// PICTURE. The values in `typed` win. The sentence names the file. Malformed where the file is wrong or two
/// sets write one path; else as RegularFile::read.
Result<std::vector<GenerateRun>> read(const std::vector<ProjectFile::Key>& keys, const OptionValues& typed);

} // namespace ProjectRuns

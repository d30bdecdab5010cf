#pragma once

#include "cli/generate/GenerateOptions.h"
#include "cli/text/OptionText.h"

#include <map>
#include <string>
#include <vector>

/// Options as typed: the values of each under its name, such as "--out" or "PICTURE".
using OptionValues = std::map<std::string, std::vector<std::string>>;

/// One set to be made.
struct GenerateRun {
    OptionValues values;
    GenerateOptions options; ///< what the values mean
    QString folder;          ///< of all pictures that were given together
};

namespace GenerateRuns {

/// What the values mean, or what is wrong with them. With several pictures the options are those of the
/// first, as if it were alone.
Parsed<GenerateOptions> parsed(const OptionValues& values);

/// The runs for `values`: one for each of their pictures. With several pictures each goes into a folder of
/// its name below --out.
Parsed<std::vector<GenerateRun>> of(const OptionValues& values);

/// Makes the set of one run. Returns the exit status.
int make(const GenerateOptions& options);

} // namespace GenerateRuns

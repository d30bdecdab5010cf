#pragma once

#include "base/Result.h"
#include "cli/text/OptionText.h"
#include "project/proof/ProofSheet.h"

#include <CLI/CLI.hpp>

#include <string>

/// The option --proof of several commands.
namespace ProofOption {

/// Adds the option to `command`; what is typed goes to `word`.
void addTo(CLI::App& command, std::string& word);

/// The path of the sheet, for a command that reads `input`. A complaint if its ending tells no form, or if it
/// is the input itself.
Parsed<QString> path(const std::string& word, const std::string& input);

/// The title of the sheet for a file's icons: the file's name.
QString title(const std::string& input);

/// Escapes the sheet's texts and writes it. Fails as `writeProof`.
Result<Done> write(ProofSheet sheet, const QString& path);

} // namespace ProofOption

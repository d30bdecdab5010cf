#pragma once

#include "cli/common/Command.h"

#include <optional>
#include <string>
#include <vector>

/// The commands that the command line named, outermost first: "icns", "list".
std::vector<const CLI::App*> namedCommands(const CLI::App& app);

/// "generate, icns or export".
std::string namesOf(const std::vector<const CLI::App*>& commands);

/// The complaint about the first word that the parser of `app` could not use, if there is one: neither an
/// option, a command nor an argument. `words` are all words behind the program's name.
std::optional<UsageError> unknownWord(const CLI::App& app, const std::vector<std::string>& words);

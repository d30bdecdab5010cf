#pragma once

#include <CLI/CLI.hpp>

#include <string>

/// What `--help` prints for `command`: its example (kept as the parser's footer), what it does, its usage,
/// and a table of its operands, options and commands. No line is longer than `columns`, unless a single word
/// is.
std::string helpText(const CLI::App& command, int columns);

#pragma once

#include "cli/text/OptionText.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <string>
#include <vector>

/// A command of the program: its parser and its work.
struct Command {
    CLI::App* app = nullptr;
    /// Called if the command line named the command. Returns the work to do, whose result is the exit status,
    /// or what is wrong with the command's options.
    std::function<Parsed<std::function<int()>>()> prepare;
    /// Tell the words that an option or operand knows, under its name. Those that accept any text are not
    /// listed.
    std::map<std::string, std::function<std::vector<std::string>()>> choices;
};

/// Adds version, help and all commands to `app`. Returns the commands that have work to do; `app` keeps the
/// options and their values.
std::vector<Command> addCommands(CLI::App& app);

/// Each function adds its commands to `app`.
Command generateCommand(CLI::App& app);
Command exportCommand(CLI::App& app);
Command layoutsCommand(CLI::App& app);
std::vector<Command> icnsCommands(CLI::App& app);
std::vector<Command> customIconCommands(CLI::App& app);

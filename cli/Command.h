#pragma once

#include "cli/OptionText.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <map>
#include <string>
#include <vector>

/// A command of the program: what the parser knows of it, and what it does.
struct Command {
    CLI::App* app = nullptr;
    /// Called when the command line named the command: the work to do, whose result is the exit status, or
    /// what is wrong with the command's options.
    std::function<Parsed<std::function<int()>>()> prepare;
    /// More about a word that no option takes; empty where there is nothing more to say.
    std::function<std::string(const std::string& word)> remark;
    /// The words that an option takes, under the option's name. An option that takes any text is not here.
    std::map<std::string, std::vector<std::string>> choices;
};

/// Makes `app` the program's parser: its version, help and all commands. Those that have work to do are
/// returned; `app` keeps the options and their values.
std::vector<Command> addCommands(CLI::App& app);

/// Each adds its commands to `app`.
Command generateCommand(CLI::App& app);
Command exportCommand(CLI::App& app);
std::vector<Command> icnsCommands(CLI::App& app);
std::vector<Command> customIconCommands(CLI::App& app);

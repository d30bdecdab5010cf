#pragma once

#include "cli/OptionText.h"

#include <CLI/CLI.hpp>

#include <functional>
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
};

/// Each adds its commands to `app`.
Command generateCommand(CLI::App& app);
Command exportCommand(CLI::App& app);
std::vector<Command> icnsCommands(CLI::App& app);
std::vector<Command> customIconCommands(CLI::App& app);

#pragma once

#include <functional>
#include <string>

/// The result of parsing a command line. Exactly one member is set.
struct ParsedCommandLine {
    std::function<int()> work; ///< the work of the named command; returns the exit status
    std::string text;          ///< help or version text to print
    std::string complaint;     ///< what is wrong with the command line
};

ParsedCommandLine parseCommandLine(int argc, const char* const* argv);

/// Parses the command line, runs the command and returns the exit status: 0 if all was done, 1 if something
/// could not be read or written, 2 for wrong usage.
int runCommandLine(int argc, const char* const* argv);

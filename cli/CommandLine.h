#pragma once

#include <functional>
#include <string>

/// What a command line asks for: one of the three.
struct ParsedCommandLine {
    std::function<int()> work; ///< of the command that it names; gives the exit status
    std::string text;          ///< help, or the version, to be printed
    std::string complaint;     ///< what is wrong with it
};

ParsedCommandLine parseCommandLine(int argc, const char* const* argv);

/// Parses the command line, runs the command that it names and returns the exit status: 0 all done, 1
/// something could not be read or written, 2 wrong usage.
int runCommandLine(int argc, const char* const* argv);

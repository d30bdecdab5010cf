#pragma once

/// Parses the command line, runs the command that it names and returns the exit status: 0 all done, 1
/// something could not be read or written, 2 wrong usage.
int runCommandLine(int argc, char** argv);

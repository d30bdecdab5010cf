#pragma once

/// Runs the application until it ends. Returns the process's exit status.
int applicationMain(int argc, char** argv);

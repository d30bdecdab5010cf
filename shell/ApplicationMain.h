#pragma once

/// Runs the application to its end; the process's exit status.
int applicationMain(int argc, char** argv);

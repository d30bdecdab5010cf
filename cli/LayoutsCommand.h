#pragma once

#include <QString>

/// The options of `tobrimax-cli layouts`.
struct LayoutsOptions {
    QString layout; ///< a name or a path; empty for the list of all
    bool json = false;
};

/// Prints the layouts that there are, or the files of one. Returns the exit status.
int runLayouts(const LayoutsOptions& options);

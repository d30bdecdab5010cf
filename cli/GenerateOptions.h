#pragma once

#include "generation/IconStyle.h"
#include "generation/Platforms.h"

#include <QString>

#include <string>
#include <vector>

/// What `tobrimax-cli generate` was asked to do.
struct GenerateOptions {
    std::string picture; ///< in the file system's own bytes
    QString out;
    std::vector<Platform> platforms; ///< each once, in the order of work
    IconStyle style;
    QString catalogue; ///< empty for the built-in one
    bool open = false;
    bool quiet = false;
    bool verbose = false;
    bool json = false;
    bool timings = false;
};

#pragma once

#include "generation/IconStyle.h"
#include "generation/Platforms.h"

#include <QString>

#include <string>
#include <vector>

/// The options of `tobrimax-cli generate`.
struct GenerateOptions {
    std::string picture; ///< in the file system's own encoding
    QString out;
    std::vector<Platform> platforms; ///< each platform once, in the order of generation
    IconStyle style;
    QString catalogue; ///< empty for the built-in catalogue
    bool open = false;
    bool quiet = false;
    bool verbose = false;
    bool json = false;
    bool timings = false;
};

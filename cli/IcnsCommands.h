#pragma once

#include "generation/IconStyle.h"

#include <QString>

#include <string>

/// What the commands of `tobrimax-cli icns` were asked to do. Files that are read are named in the file
/// system's own bytes. Each returns the exit status.

struct IcnsListOptions {
    std::string file;
    bool json = false;
};

/// Prints what a file holds, and what is odd about it.
int runIcnsList(const IcnsListOptions& options);

struct IcnsExtractOptions {
    std::string file;
    QString out;
};

/// Writes each picture of a file as a PNG file. 1 also where one of them can't be shown.
int runIcnsExtract(const IcnsExtractOptions& options);

struct IcnsMakeOptions {
    std::string picture;
    QString out;
    IconStyle style;
};

/// Writes an icns file of one picture in the seven sizes of the Mac's container.
int runIcnsMake(const IcnsMakeOptions& options);

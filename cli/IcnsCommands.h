#pragma once

#include "base/Color.h"
#include "cli/common/PictureLoading.h"
#include "generation/IconStyle.h"

#include <QString>

#include <optional>
#include <string>

/// The options of the commands of `tobrimax-cli icns`. Input paths are in the file system's own encoding.
/// Each run function returns the exit status.

struct IcnsListOptions {
    std::string file;
    bool json = false;
    QString proof; ///< the file of the proof sheet; empty for none
};

/// Prints the contents of a file, and what is odd about it.
int runIcnsList(const IcnsListOptions& options);

struct IcnsExtractOptions {
    std::string file;
    QString out;
};

/// Writes each picture of a file as a PNG file. The exit status is also 1 if a picture can't be decoded.
int runIcnsExtract(const IcnsExtractOptions& options);

struct IcnsMakeOptions {
    PictureFiles picture;
    QString out;
    IconStyle style;
    std::optional<Color> background; ///< opaque
};

/// Writes an icns file from one picture, in the seven sizes of the Mac's icon container.
int runIcnsMake(const IcnsMakeOptions& options);

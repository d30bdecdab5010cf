#pragma once

#include "imaging/pixels/PictureFit.h"

#include <QSize>
#include <QString>

#include <optional>
#include <string>

/// The options of `tobrimax-cli export`.
struct ExportOptions {
    std::string picture; ///< in the file system's own encoding
    quint64 format = 0;  ///< the format's number in ImageExport
    QString out;
    std::optional<QSize> size; ///< in pixels; if empty, the picture's own size
    PictureFit fit;
    double svgSeconds = 10; ///< of processor time, for an SVG picture
};

/// Writes the picture in one format. Returns the exit status.
int runExport(const ExportOptions& options);

#pragma once

#include "imaging/io/ImageDestination.h"

#include <QImage>
#include <QString>

/// Writes one picture in one of six formats.
namespace ImageExport {

struct Format {
    const char* logText;
    const char* type; ///< the type identifier of the image destination
    ImageProperties properties;
};

/// The format of that number: 0 JPEG, 1 TIFF, 2 BMP, 3 GIF, 4 PNG, 5 JPEG 2000; null for any other number.
const Format* format(quint64 number);

/// Logs the format's text and writes `imageRef` to exactly that path. The file is written whole or not at
/// all, and synced to the disk. If `number` has no format, nothing is logged or written, and that is no
/// failure.
Result<Done> saveImageInSelectedFormat(quint64 number, const QString& filePath, const QImage& imageRef);

} // namespace ImageExport

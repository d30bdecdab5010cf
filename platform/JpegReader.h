#pragma once

#include "platform/PictureReader.h"

#include <QByteArray>
#include <QSizeF>

#include <optional>

/// Decodes a JPEG file (ISO/IEC 10918-1): grey, YCbCr, RGB, CMYK and YCCK, baseline and progressive, with its
/// ICC profile and EXIF orientation. Entropy-coded data that breaks off or can't be decoded is an error. With
/// `largestRender` the raster may be the reduced copy that renders of at most that many pixels draw from.
Result<DecodedPicture> readJpeg(const QByteArray& bytes,
                                const std::optional<QSizeF>& largestRender = std::nullopt);

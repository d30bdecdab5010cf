#pragma once

#include <QByteArray>
#include <QImage>

/// `raster` (RGBA8888_Premultiplied) as a JPEG 2000 file (ISO/IEC 15444-1, JP2), lossless: red, green, blue,
/// straight, and alpha. Empty where there are no pixels or memory is short.
QByteArray encodeJpeg2000(const QImage& raster);

#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QImage>

/// `raster` (RGBA8888_Premultiplied) as a lossless JPEG 2000 file (ISO/IEC 15444-1, JP2): straight red, green
/// and blue, and alpha. EmptySize where there are no pixels, OutOfMemory; Unsupported where the library
/// fails.
Result<QByteArray> encodeJpeg2000(const QImage& raster);

#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QImage>

enum class TiffCompression {
    None, ///< one strip of premultiplied samples ("associated alpha")
    Lzw,  ///< straight samples, which more programs understand, with horizontal differences
};

/// `raster` (RGBA8888_Premultiplied) as a TIFF 6.0 file of RGBA samples, 8 bits each. EmptySize where there
/// are no pixels, OutOfMemory; Unsupported where the library fails.
Result<QByteArray> encodeTiff(const QImage& raster, TiffCompression compression = TiffCompression::None);

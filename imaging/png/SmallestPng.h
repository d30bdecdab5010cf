#pragma once

#include "base/Result.h"
#include "imaging/png/PngSamples.h"

#include <QByteArray>
#include <QImage>

/// The pixels of a PNG file, and what says how they are read.
struct PngPixels {
    PngSamples samples; ///< without their bytes
    QByteArray stream;  ///< zlib's format
};

/// `raster`'s pixels in the fewest bytes that many trials give: of samples, of filters for each row and of
/// compression. Takes about 50 times as long as the usual choice. `raster` and `channels` are as for
/// `pngSamplesOf`. The same raster gives the same bytes. OutOfMemory; may throw std::bad_alloc.
Result<PngPixels> smallestPngPixels(const QImage& raster, PngChannels channels);

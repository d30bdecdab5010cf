#pragma once

#include "base/Result.h"
#include "imaging/png/PngOptions.h"

#include <QByteArray>
#include <QImage>

/// `raster` (RGBA8888_Premultiplied, or RGBA8888 with straight colours) as a PNG file (ISO/IEC 15948): 8-bit
/// RGBA (also for opaque pictures), or RGB where the options say so and the raster is opaque, or samples of
/// another kind that hold the same pixels where they may; not interlaced; the chunks IHDR, sRGB (perceptual),
/// PLTE and tRNS of a palette, IDAT and IEND. The same raster gives the same bytes. EmptySize where
/// there are no pixels, OutOfMemory.
Result<QByteArray> encodePng(const QImage& raster, const PngOptions& options = {});

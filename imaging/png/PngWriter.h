#pragma once

#include "imaging/png/PngOptions.h"

#include <QByteArray>
#include <QImage>

/// `raster` (RGBA8888_Premultiplied, or RGBA8888 with straight colours) as a PNG file (ISO/IEC 15948): 8-bit
/// RGBA, opaque pictures too, not interlaced; the chunks IHDR, sRGB (perceptual), IDAT and IEND. The same
/// raster gives the same bytes. Empty where there are no pixels or memory is short.
QByteArray encodePng(const QImage& raster, const PngOptions& options = {});

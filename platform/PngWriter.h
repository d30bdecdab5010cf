#pragma once

#include <QByteArray>
#include <QImage>

/// How a PNG's rows are filtered before compression.
enum class PngFilterStrategy {
    Choose,   ///< None or Adaptive, whichever compresses better; of a large picture only a sample is tried
    None,     ///< no filter: best for flat graphics
    Adaptive, ///< for each row the filter with the least sum of absolute differences: best for photographs
};

struct PngOptions {
    PngFilterStrategy filter = PngFilterStrategy::Choose;
    int level = 6; ///< of libdeflate, 1 to 12
};

/// `raster` (RGBA8888_Premultiplied, or RGBA8888 with straight colours) as a PNG file (ISO/IEC 15948): 8-bit
/// RGBA, opaque pictures too, not interlaced; the chunks IHDR, sRGB (perceptual), IDAT and IEND. The same
/// raster gives the same bytes. Empty where there are no pixels or memory is short.
QByteArray encodePng(const QImage& raster, const PngOptions& options = {});

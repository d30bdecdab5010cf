#pragma once

#include "platform/Deflate.h"

#include <QByteArray>
#include <QImage>

#include <optional>

/// How a PNG's rows are filtered before compression.
enum class PngFilterStrategy {
    None,     ///< no filter: best for flat graphics
    Adaptive, ///< for each row the filter with the least sum of absolute differences: best for photographs
};

/// What is not said is chosen for the picture, by a sample of its rows; of a small one by all of them.
struct PngOptions {
    std::optional<PngFilterStrategy> filter;
    std::optional<Deflate::Method> method;
};

/// `raster` (RGBA8888_Premultiplied, or RGBA8888 with straight colours) as a PNG file (ISO/IEC 15948): 8-bit
/// RGBA, opaque pictures too, not interlaced; the chunks IHDR, sRGB (perceptual), IDAT and IEND. The same
/// raster gives the same bytes. Empty where there are no pixels or memory is short.
QByteArray encodePng(const QImage& raster, const PngOptions& options = {});

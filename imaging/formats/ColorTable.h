#pragma once

#include "base/Result.h"

#include <QImage>

#include <array>
#include <cstdint>
#include <vector>

/// A picture of at most 256 colours.
struct IndexedPicture {
    using Rgb = std::array<std::uint8_t, 3>;

    std::vector<Rgb> colors; ///< the first is that of transparent pixels where there are any
    bool hasTransparency = false;
    std::vector<std::uint8_t> indexes; ///< one for each pixel, rows from the top
};

/// `raster` (RGBA8888_Premultiplied) with its colours reduced to 255 and transparency: pixels of less than
/// half coverage become transparent, all others opaque. A picture of no more colours keeps them exactly; of
/// others the table comes from median cut (Heckbert 1982), made better by moving each colour to the mean of
/// the pixels that are nearest to it, and what is lost at a pixel is spread over its neighbours (Floyd and
/// Steinberg 1976). OutOfMemory is the only error.
Result<IndexedPicture> indexedPicture(const QImage& raster);

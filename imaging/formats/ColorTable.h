#pragma once

#include "base/Result.h"

#include <QImage>

#include <array>
#include <cstdint>
#include <vector>

/// A picture of at most 256 colours.
struct IndexedPicture {
    using Rgb = std::array<std::uint8_t, 3>;

    std::vector<Rgb> colors; ///< where there are transparent pixels, the first colour is theirs
    bool hasTransparency = false;
    std::vector<std::uint8_t> indexes; ///< one for each pixel, rows from the top
};

/// `raster` (RGBA8888_Premultiplied) with its colours reduced to 255 and transparency. Pixels of less than
/// half coverage become transparent, all others opaque. A picture of at most 255 colours keeps them exactly.
/// For all others the table comes from median cut (Heckbert 1982). Each colour then moves to the mean of the
/// pixels that are nearest to it. The error at each pixel is spread over its neighbours (Floyd and Steinberg
/// 1976). OutOfMemory is the only error.
Result<IndexedPicture> indexedPicture(const QImage& raster);

#pragma once

#include <QImage>

#include <cstddef>
#include <cstdint>

/// `pixels` premultiplied RGBA pixels with their colours divided by alpha: (c × 255 + a ÷ 2) ÷ a in whole
/// numbers, at most 255; alpha 0 gives colour 0. `in` and `out` may be the same.
void unpremultiply(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);

/// `raster` (RGBA8888_Premultiplied or RGBA8888) with straight colours, RGBA8888; null where memory is short.
QImage straightRaster(const QImage& raster);

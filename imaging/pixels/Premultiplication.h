#pragma once

#include "base/Result.h"

#include <QImage>

#include <cstddef>
#include <cstdint>

// Pixels are RGBA, 8 bits a sample. `in` and `out` may be the same memory; otherwise they do not overlap.

/// Multiplies the colours of `pixels` straight pixels by alpha: c × a ÷ 255, rounded.
void premultiply(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);

/// Divides the colours of `pixels` premultiplied pixels by alpha: (c × 255 + a ÷ 2) ÷ a in whole numbers, at
/// most 255. Alpha 0 gives colour 0.
void unpremultiply(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);

/// The same for A, R, G, B pixels.
void unpremultiplyArgb(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);

/// Lowers each colour that exceeds its alpha to the alpha, in `pixels` premultiplied pixels of unknown
/// origin.
void clampToAlpha(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);

/// Whether no colour of `pixels` premultiplied pixels exceeds its alpha.
bool isClampedToAlpha(const std::uint8_t* in, std::size_t pixels);

/// `raster` (RGBA8888_Premultiplied or RGBA8888) with straight colours, RGBA8888. EmptySize
/// where `raster` has no pixels, OutOfMemory.
Result<QImage> straightRaster(const QImage& raster);

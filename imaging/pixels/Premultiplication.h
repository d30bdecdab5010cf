#pragma once

#include <QImage>

#include <cstddef>
#include <cstdint>

// Colours and alpha of RGBA pixels of 8 bits a sample. `in` and `out` may be the same, but not overlap
// otherwise.

/// `pixels` straight pixels with their colours multiplied by alpha: c × a ÷ 255, rounded.
void premultiply(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);

/// `pixels` premultiplied pixels with their colours divided by alpha: (c × 255 + a ÷ 2) ÷ a in whole numbers,
/// at most 255; alpha 0 gives colour 0.
void unpremultiply(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);

/// The same for A, R, G, B pixels.
void unpremultiplyArgb(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);

/// `pixels` premultiplied pixels of unknown origin, with colours that exceed their alpha lowered to it.
void clampToAlpha(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);

/// Whether no colour of `pixels` premultiplied pixels exceeds its alpha.
bool isClampedToAlpha(const std::uint8_t* in, std::size_t pixels);

/// `raster` (RGBA8888_Premultiplied or RGBA8888) with straight colours, RGBA8888; null where memory is short.
QImage straightRaster(const QImage& raster);

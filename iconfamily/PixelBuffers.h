#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// Operations on whole buffers of pixels.
namespace PixelBuffers {

/// Which byte of a pixel each byte of the result is.
using Map = std::array<std::uint8_t, 4>;

/// Pixels of four bytes in another order. `in` and `out` may be the same.
void permute(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels, const Map& map);

/// Pixels of three bytes as 255 and those three. The buffers do not overlap.
void expandRgb(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);

} // namespace PixelBuffers

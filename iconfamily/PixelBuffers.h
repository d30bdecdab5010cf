#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// Operations on whole buffers of pixels.
namespace PixelBuffers {

/// For each byte of a result pixel: the index of its byte in the source pixel.
using Map = std::array<std::uint8_t, 4>;

/// Reorders the bytes of 4-byte pixels. `in` and `out` may be the same buffer.
void permute(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels, const Map& map);

/// Expands 3-byte pixels to 4 bytes, with 255 as the first byte. The buffers must not overlap.
void expandRgb(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels);

} // namespace PixelBuffers

#include "iconfamily/PixelBuffers.h"

#include <algorithm>

void PixelBuffers::permute(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels, const Map& map) {
    for (std::size_t i = 0; i < 4 * pixels; i += 4) {
        const Map pixel{in[i + map[0]], in[i + map[1]], in[i + map[2]], in[i + map[3]]};
        std::ranges::copy(pixel, out + i);
    }
}

void PixelBuffers::expandRgb(const std::uint8_t* in, std::uint8_t* out, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i, in += 3, out += 4) {
        out[0] = 255;
        std::copy_n(in, 3, out + 1);
    }
}

void PixelBuffers::unpremultiplyArgb(std::uint8_t* pixelBytes, std::size_t pixels) {
    for (std::size_t i = 0; i < pixels; ++i, pixelBytes += 4) {
        const unsigned a = pixelBytes[0];
        for (int c = 1; c < 4; ++c)
            pixelBytes[c] =
                a == 0 ? std::uint8_t{0}
                       : static_cast<std::uint8_t>(std::min(255U, (pixelBytes[c] * 255U + a / 2) / a));
    }
}

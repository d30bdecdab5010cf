#include "imaging/pixels/Ground.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

void layOnGround(QImage& raster, const Color& color) {
    const auto byte = [](double part) { return static_cast<int>(std::lround(part * 255)); };
    const int ground[]{byte(color.red), byte(color.green), byte(color.blue)};
    const uchar whole[4]{static_cast<uchar>(ground[0]), static_cast<uchar>(ground[1]),
                         static_cast<uchar>(ground[2]), 255};
    constexpr uchar nothing[4]{};
    const int width = raster.width();
    for (int y = 0; y < raster.height(); ++y) {
        uchar* pixel = raster.scanLine(y);
        for (const uchar* const end = pixel + 4 * static_cast<std::ptrdiff_t>(width); pixel != end;
             pixel += 4) {
            const int missing = 255 - pixel[3];
            if (missing == 0)
                continue;
            if (std::memcmp(pixel, nothing, 4) == 0) {
                std::memcpy(pixel, whole, 4);
                continue;
            }
            for (int i = 0; i < 3; ++i)
                pixel[i] = static_cast<uchar>(std::min(255, pixel[i] + (ground[i] * missing + 127) / 255));
            pixel[3] = 255;
        }
    }
}

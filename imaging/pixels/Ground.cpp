#include "imaging/pixels/Ground.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

void layOnGround(QImage& raster, const Color& color) {
    const auto byte = [](double part) { return static_cast<int>(std::lround(part * 255)); };
    const int ground[]{byte(color.red), byte(color.green), byte(color.blue)};
    const int width = raster.width();
    for (int y = 0; y < raster.height(); ++y) {
        uchar* pixel = raster.scanLine(y);
        for (const uchar* const end = pixel + 4 * static_cast<std::ptrdiff_t>(width); pixel != end;
             pixel += 4) {
            const int missing = 255 - pixel[3];
            if (missing == 0)
                continue;
            for (int i = 0; i < 3; ++i)
                pixel[i] = static_cast<uchar>(std::min(255, pixel[i] + (ground[i] * missing + 127) / 255));
            pixel[3] = 255;
        }
    }
}

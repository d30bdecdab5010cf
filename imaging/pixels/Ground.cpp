#include "imaging/pixels/Ground.h"

#include <algorithm>
#include <cmath>

void layOnGround(QImage& raster, const Color& color) {
    const auto byte = [](double part) { return static_cast<int>(std::lround(part * 255)); };
    const int ground[]{byte(color.red), byte(color.green), byte(color.blue)};
    for (int y = 0; y < raster.height(); ++y) {
        uchar* pixel = raster.scanLine(y);
        for (int x = 0; x < raster.width(); ++x, pixel += 4) {
            const int missing = 255 - pixel[3];
            for (int i = 0; i < 3; ++i)
                pixel[i] = static_cast<uchar>(std::min(255, pixel[i] + (ground[i] * missing + 127) / 255));
            pixel[3] = 255;
        }
    }
}

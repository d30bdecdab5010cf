#include "tests/support/Pictures.h"

#include "imaging/image/BitmapImageRep.h"
#include "imaging/io/ImageSource.h"
#include "imaging/pixels/Premultiplication.h"
#include "imaging/png/PngWriter.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <random>

namespace {

QImage empty(int width, int height) {
    return {width, height, QImage::Format_RGBA8888_Premultiplied};
}

} // namespace

QImage Pictures::raster(int width, int height, const std::function<QColor(int x, int y)>& color) {
    QImage image = empty(width, height);
    for (int y = 0; y < height; ++y) {
        uchar* out = image.scanLine(y);
        for (int x = 0; x < width; ++x, out += 4) {
            const QColor c = color(x, y);
            const uchar rgba[4] = {static_cast<uchar>(c.red()), static_cast<uchar>(c.green()),
                                   static_cast<uchar>(c.blue()), static_cast<uchar>(c.alpha())};
            std::memcpy(out, rgba, 4);
            premultiply(out, out, 1);
        }
    }
    return image;
}

QImage Pictures::flat(int width, int height, const QColor& color) {
    return raster(width, height, [&](int, int) { return color; });
}

QImage Pictures::noise(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    return raster(width, height, [&](int, int) {
        const auto bits = static_cast<unsigned>(random());
        return QColor(static_cast<int>(bits & 255), static_cast<int>(bits >> 8 & 255),
                      static_cast<int>(bits >> 16 & 255));
    });
}

QImage Pictures::translucentNoise(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    return raster(width, height, [&](int, int) {
        const auto bits = static_cast<unsigned>(random());
        return QColor(static_cast<int>(bits & 255), static_cast<int>(bits >> 8 & 255),
                      static_cast<int>(bits >> 16 & 255), static_cast<int>(bits >> 24));
    });
}

Image Pictures::image(const QImage& raster) {
    Image image{QSizeF(raster.size())};
    image.addRepresentation(std::make_shared<BitmapImageRep>(raster));
    return image;
}

Image Pictures::loadedImage(const QImage& raster) {
    return ImageSource::load(*encodePng(raster))->image;
}

Pictures::Pixel Pictures::pixel(const QImage& raster, int x, int y) {
    const uchar* p = raster.constScanLine(y) + 4 * static_cast<std::ptrdiff_t>(x);
    return {p[0], p[1], p[2], p[3]};
}

void Pictures::PrintTo(const Pixel& pixel, std::ostream* out) {
    *out << "rgba(" << pixel.red << ", " << pixel.green << ", " << pixel.blue << ", " << pixel.alpha << ")";
}

bool Pictures::same(const QImage& a, const QImage& b) {
    return a.size() == b.size() && largestDifference(a, b) == 0;
}

int Pictures::largestDifference(const QImage& a, const QImage& b) {
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        const uchar* p = a.constScanLine(y);
        const uchar* q = b.constScanLine(y);
        for (int i = 0; i < 4 * a.width(); ++i)
            largest = std::max(largest, std::abs(p[i] - q[i]));
    }
    return largest;
}

QByteArray Pictures::slowSvg() {
    QByteArray line;
    for (int i = 0; i < 10000; ++i)
        line += 'L' + QByteArray::number(37 * i % 100) + ' ' + QByteArray::number(61 * i % 97);
    return "<svg xmlns='http://www.w3.org/2000/svg' width='100' height='100'><path fill='none' stroke='#000' "
           "stroke-width='60' d='M0 0" +
           line + "'/></svg>";
}

QImage Pictures::mirroredLeftRight(const QImage& raster) {
    QImage result = empty(raster.width(), raster.height());
    for (int y = 0; y < raster.height(); ++y) {
        for (int x = 0; x < raster.width(); ++x)
            std::memcpy(result.scanLine(y) + 4 * x, raster.constScanLine(y) + 4 * (raster.width() - 1 - x),
                        4);
    }
    return result;
}

QImage Pictures::mirroredTopBottom(const QImage& raster) {
    QImage result = empty(raster.width(), raster.height());
    for (int y = 0; y < raster.height(); ++y)
        std::memcpy(result.scanLine(y), raster.constScanLine(raster.height() - 1 - y),
                    static_cast<std::size_t>(raster.bytesPerLine()));
    return result;
}

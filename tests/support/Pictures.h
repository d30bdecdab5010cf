#pragma once

#include "imaging/image/Image.h"

#include <QByteArray>
#include <QColor>
#include <QImage>

#include <functional>

/// Draws pictures for tests, and compares pictures.
namespace Pictures {

/// A raster whose pixels are the premultiplied form of `color(x, y)`.
QImage raster(int width, int height, const std::function<QColor(int x, int y)>& color);

/// A raster of one colour.
QImage flat(int width, int height, const QColor& color);

/// An opaque raster of seeded noise, the same on every machine.
QImage noise(int width, int height, unsigned seed);

/// The same with alpha.
QImage translucentNoise(int width, int height, unsigned seed);

/// An image of that raster, without reduced copies.
Image image(const QImage& raster);

/// An image of that raster with its reduced copies, like the image of a loaded picture.
Image loadedImage(const QImage& raster);

/// An SVG document of 60 KB that takes minutes to draw, in any size: a broad line crosses itself everywhere.
QByteArray slowSvg();

/// The four bytes of a pixel.
struct Pixel {
    int red;
    int green;
    int blue;
    int alpha;
    bool operator==(const Pixel&) const = default;
};
Pixel pixel(const QImage& raster, int x, int y);
void PrintTo(const Pixel& pixel, std::ostream* out);

/// Whether both have the same size and bytes.
bool same(const QImage& a, const QImage& b);

/// The largest difference between two bytes of rasters of equal size.
int largestDifference(const QImage& a, const QImage& b);

QImage mirroredLeftRight(const QImage& raster);
QImage mirroredTopBottom(const QImage& raster);

} // namespace Pictures

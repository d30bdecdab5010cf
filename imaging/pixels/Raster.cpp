#include "imaging/pixels/Raster.h"

#include "base/ShortMemory.h"

#include <cstddef>
#include <cstring>

Error noMemoryForPixels(qint64 width, qint64 height) {
    return {ErrorCode::OutOfMemory,
            QStringLiteral("not enough memory for %1 × %2 pixels").arg(width).arg(height)};
}

Error noPixels() {
    return {ErrorCode::EmptySize, QStringLiteral("the picture has no pixels")};
}

Result<QImage> newRaster(const QSize& size, QImage::Format format) {
    if (size.isEmpty())
        return noPixels();
    // It is null without memory for its pixels, and throws without memory for itself.
    Result<QImage> raster = unlessMemoryIsShort([&] { return QImage(size, format); });
    if (!raster || raster->isNull())
        return noMemoryForPixels(size.width(), size.height());
    return raster;
}

Result<QImage> placed(const QImage& part, const QPoint& place, const QSize& size) {
    if (part.size() == size)
        return part;
    Result<QImage> raster = newRaster(size, QImage::Format_RGBA8888_Premultiplied);
    if (!raster)
        return raster;
    raster->fill(0);
    for (int y = 0; y < part.height(); ++y)
        std::memcpy(raster->scanLine(place.y() + y) + 4 * static_cast<std::ptrdiff_t>(place.x()),
                    part.constScanLine(y), 4 * static_cast<std::size_t>(part.width()));
    return raster;
}

Result<Done> makeOwn(QImage& raster) {
    const QSize size = raster.size();
    const Result<const uchar*> pixels = unlessMemoryIsShort([&]() -> const uchar* { return raster.bits(); });
    if (!pixels || *pixels == nullptr)
        return noMemoryForPixels(size.width(), size.height());
    return Done{};
}

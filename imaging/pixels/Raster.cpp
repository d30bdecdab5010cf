#include "imaging/pixels/Raster.h"

#include "base/ShortMemory.h"

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

Result<Done> makeOwn(QImage& raster) {
    const QSize size = raster.size();
    const Result<const uchar*> pixels = unlessMemoryIsShort([&]() -> const uchar* { return raster.bits(); });
    if (!pixels || *pixels == nullptr)
        return noMemoryForPixels(size.width(), size.height());
    return Done{};
}

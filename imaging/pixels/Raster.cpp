#include "imaging/pixels/Raster.h"

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
    QImage raster(size, format);
    if (raster.isNull())
        return noMemoryForPixels(size.width(), size.height());
    return raster;
}

Result<Done> makeOwn(QImage& raster) {
    const QSize size = raster.size();
    if (raster.bits() == nullptr)
        return noMemoryForPixels(size.width(), size.height());
    return Done{};
}

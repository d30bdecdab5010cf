#include "generation/IconContainer.h"

#include "imaging/drawing/GraphicsContext.h"
#include "imaging/icns/IcnsWriter.h"
#include "imaging/io/ImageDestination.h"

#include <algorithm>
#include <utility>
#include <vector>

std::vector<QSizeF> IconContainer::renders() {
    std::vector<QSizeF> sizes;
    sizes.reserve(sides.size());
    for (const int side : sides)
        sizes.emplace_back(side, side);
    return sizes;
}

QSize IconContainer::largestSize(int scale) {
    QSize largest;
    for (const QSizeF& size : renders()) {
        const QSize pixels = GraphicsContext::pixelSize(size, scale);
        if (IcnsWriter::hasElement(pixels))
            largest = largest.expandedTo(pixels);
    }
    return largest;
}

Result<IconContainer::Written> IconContainer::write(const Image& image, const IconRenderer& renderer,
                                                    const QString& path) {
    std::vector<QImage> rasters;
    for (const QSizeF& size : renders()) {
        const Image render = renderer.drawImage(image, size);
        rasters.push_back(IconRenderer::getCgiImageRef(&render));
    }
    // They are rendered smallest first, and stored largest first.
    std::ranges::reverse(rasters);
    const std::unique_ptr<ImageDestination> destination = ImageDestination::create(
        path, QString::fromLatin1(ImageDestination::icnsType), static_cast<int>(rasters.size()));
    if (!destination)
        return Error{ErrorCode::NotAPath, QStringLiteral("the unescaped path is not a path")};
    for (QImage& raster : rasters)
        destination->addImage(std::exchange(raster, {}));
    if (const Result<Done> written = destination->finalize(); !written)
        return written.error();
    return Written{destination->largestSize(), destination->bytesWritten()};
}

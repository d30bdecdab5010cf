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
        const Result<QSize> pixels = GraphicsContext::pixelSize(size, scale);
        if (pixels && IcnsWriter::hasElement(*pixels))
            largest = largest.expandedTo(*pixels);
    }
    return largest;
}

Result<IconContainer::Written> IconContainer::write(const Image& image, const IconRenderer& renderer,
                                                    const QString& path, const IconGround& ground,
                                                    PngStore* pngs, OutputPlace& place) {
    std::vector<QImage> rasters;
    for (const QSizeF& size : renders()) {
        const Result<Image> render = renderer.rendered(image, size);
        if (!render)
            return render.error();
        Result<QImage> raster = IconRenderer::throughTiff(*render);
        if (raster)
            raster = ground.under(std::move(*raster));
        if (!raster)
            return IconRenderer::ofIcon(raster.error(), size);
        rasters.push_back(std::move(*raster));
    }
    // The pictures are rendered smallest first and stored largest first.
    std::ranges::reverse(rasters);
    Result<ImageDestination> destination = ImageDestination::create(
        path, QString::fromLatin1(ImageDestination::icnsType), static_cast<int>(rasters.size()));
    if (!destination)
        return destination.error();
    for (QImage& raster : rasters) {
        if (const Result<Done> added = destination->addImage(std::exchange(raster, {}), {.pngs = pngs});
            !added)
            return added.error();
    }
    if (const Result<Done> written = destination->finalize(place); !written)
        return written.error();
    return Written{destination->largestSize(), destination->bytesWritten()};
}

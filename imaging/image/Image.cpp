#include "imaging/image/Image.h"

#include "imaging/image/BitmapImageRep.h"
#include "imaging/pixels/ReducedCopies.h"

#include <algorithm>
#include <utility>

namespace {

qint64 area(const ImageRep& representation) {
    const QSize size = representation.pixelSize();
    return static_cast<qint64>(size.width()) * size.height();
}

} // namespace

void Image::addRepresentation(std::shared_ptr<const ImageRep> representation) {
    m_representations.push_back(std::move(representation));
}

/// The representation that is reserved for icons of that side and for the fewest others; null if there is
/// none.
std::shared_ptr<const ImageRep> Image::reservedFor(double side) const {
    std::shared_ptr<const ImageRep> best;
    for (const auto& representation : m_representations) {
        const int limit = representation->reservedSide();
        if (limit > 0 && side <= limit && (!best || limit < best->reservedSide()))
            best = representation;
    }
    return best;
}

const ImageRep* Image::bestRepresentation(const QSizeF& pixels) const {
    if (const auto reserved = reservedFor(std::max(pixels.width(), pixels.height())))
        return reserved.get();
    std::vector<QSize> sizes;
    std::vector<const ImageRep*> bitmaps;
    for (const auto& representation : m_representations) {
        if (representation->reservedSide() > 0)
            continue;
        if (representation->pixelSize().isEmpty())
            return representation.get();
        sizes.push_back(representation->pixelSize());
        bitmaps.push_back(representation.get());
    }
    const std::size_t best = ReducedCopies::bestOf(sizes, pixels);
    return best < sizes.size() ? bitmaps[best] : nullptr;
}

Image Image::forIcons(int side) const {
    Image image(m_size);
    if (const auto reserved = reservedFor(side)) {
        image.addRepresentation(reserved);
        return image;
    }
    for (const auto& representation : m_representations) {
        if (representation->reservedSide() == 0)
            image.addRepresentation(representation);
    }
    return image;
}

Result<QImage> Image::largestRaster() const {
    const BitmapImageRep* largest = nullptr;
    for (const auto& representation : m_representations) {
        const auto* bitmap = dynamic_cast<const BitmapImageRep*>(representation.get());
        if (bitmap != nullptr && (largest == nullptr || area(*bitmap) > area(*largest)))
            largest = bitmap;
    }
    return largest != nullptr ? largest->raster() : QImage();
}

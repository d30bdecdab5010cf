#include "imaging/image/Image.h"

#include "imaging/image/BitmapImageRep.h"
#include "imaging/pixels/ReducedCopies.h"

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

const ImageRep* Image::bestRepresentation(const QSizeF& pixels) const {
    std::vector<QSize> sizes;
    for (const auto& representation : m_representations) {
        if (representation->pixelSize().isEmpty())
            return representation.get();
        sizes.push_back(representation->pixelSize());
    }
    const std::size_t best = ReducedCopies::bestOf(sizes, pixels);
    return best < sizes.size() ? m_representations[best].get() : nullptr;
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

#include "platform/Image.h"

#include "platform/BitmapImageRep.h"
#include "platform/TiffWriter.h"

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
    QSize full;
    for (const auto& representation : m_representations) {
        if (representation->pixelSize().isEmpty())
            return representation.get();
        full = full.expandedTo(representation->pixelSize());
    }
    const ImageRep* best = nullptr;
    for (const auto& representation : m_representations) {
        const QSize size = representation->pixelSize();
        if (QSizeF(size) == pixels)
            return representation.get();
        const bool isEnough = (size.width() >= 2 * pixels.width() || size.width() == full.width()) &&
                              (size.height() >= 2 * pixels.height() || size.height() == full.height());
        if (isEnough && (best == nullptr || area(*representation) < area(*best)))
            best = representation.get();
    }
    return best;
}

QImage Image::largestRaster() const {
    const BitmapImageRep* largest = nullptr;
    for (const auto& representation : m_representations) {
        const auto* bitmap = dynamic_cast<const BitmapImageRep*>(representation.get());
        if (bitmap != nullptr && (largest == nullptr || area(*bitmap) > area(*largest)))
            largest = bitmap;
    }
    return largest != nullptr ? largest->raster() : QImage();
}

QByteArray Image::TIFFRepresentation() const {
    return encodeTiff(largestRaster());
}

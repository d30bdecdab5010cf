// Builds a whole family from one picture.
#include "base/ShortMemory.h"
#include "iconfamily/IconFamily.h"
#include "imaging/drawing/GraphicsContext.h"
#include "imaging/pixels/Raster.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

ResampleFilter filterOf(IconFamily::ImageInterpolation interpolation) {
    switch (interpolation) {
    case IconFamily::ImageInterpolation::None:
        return ResampleFilter::Nearest;
    case IconFamily::ImageInterpolation::Low:
        return ResampleFilter::Linear;
    case IconFamily::ImageInterpolation::Medium:
        return ResampleFilter::Cubic;
    default:
        return ResampleFilter::Lanczos3;
    }
}

/// The drawing if there is one, else the bitmap with the most pixels; null if there are no representations.
std::shared_ptr<const ImageRep> largestRepresentation(const Image& image) {
    std::shared_ptr<const ImageRep> largest;
    const auto area = [](const ImageRep& representation) {
        return static_cast<qint64>(representation.pixelSize().width()) * representation.pixelSize().height();
    };
    for (const auto& representation : image.representations()) {
        if (representation->pixelSize().isEmpty())
            return representation;
        if (largest == nullptr || area(*representation) > area(*largest))
            largest = representation;
    }
    return largest;
}

/// The shorter edge of a picture after its longer edge was scaled to `edge`.
float fittedEdge(double shorter, double longer, double edge) {
    return static_cast<float>(std::floor(shorter * edge / longer + 0.5));
}

/// A bitmap with alpha first, made from `raster`.
Result<std::shared_ptr<const BitmapImageRep>> captured(const QImage& raster) {
    return unlessMemoryIsShort([&]() -> Result<std::shared_ptr<const BitmapImageRep>> {
        BitmapLayout layout;
        layout.pixelsWide = raster.width();
        layout.pixelsHigh = raster.height();
        layout.isAlphaFirst = true;
        QByteArray samples(reinterpret_cast<const char*>(raster.constBits()), raster.sizeInBytes());
        for (qsizetype i = 0; i < samples.size(); i += 4)
            std::rotate(samples.data() + i, samples.data() + i + 3, samples.data() + i + 4);
        Result<std::unique_ptr<BitmapImageRep>> bitmap = BitmapImageRep::initWithBitmapData(layout, samples);
        if (!bitmap)
            return bitmap.error();
        return std::shared_ptr<const BitmapImageRep>(std::move(*bitmap));
    });
}

/// `image` fitted into a square, centred. EmptySize if there is nothing to draw or no square of that size.
Result<QImage> fitted(const Image& image, qint32 toIconWidth, ResampleFilter filter) {
    const std::shared_ptr<const ImageRep> representation = largestRepresentation(image);
    if (representation == nullptr || toIconWidth <= 0)
        return noPixels();
    const QSizeF size =
        representation->pixelSize().isEmpty() ? image.size() : QSizeF(representation->pixelSize());
    if (!(size.width() > 0) || !(size.height() > 0))
        return noPixels();
    const double edge = toIconWidth;
    const bool isWide = size.width() >= size.height();
    const float width = isWide ? static_cast<float>(edge) : fittedEdge(size.width(), size.height(), edge);
    const float height = isWide ? fittedEdge(size.height(), size.width(), edge) : static_cast<float>(edge);

    Image drawn(size);
    drawn.addRepresentation(representation);
    Result<GraphicsContext> context = GraphicsContext::create(QSizeF(edge, edge), 1);
    if (!context)
        return context.error();
    context->setImageInterpolation(filter);
    const float left = (static_cast<float>(edge) - width) * 0.5F;
    const float bottom = (static_cast<float>(edge) - height) * 0.5F;
    // If an edge rounds to 0, the square stays transparent.
    if (width > 0 && height > 0) {
        const QRectF place(static_cast<double>(left), static_cast<double>(bottom), static_cast<double>(width),
                           static_cast<double>(height));
        if (const Result<Done> done = context->drawImage(drawn, place); !done)
            return done.error();
    }
    return context->raster();
}

Result<QImage> fitted(const Image& image, qint32 toIconWidth, IconFamily::ImageInterpolation interpolation) {
    return unlessMemoryIsShort([&] { return fitted(image, toIconWidth, filterOf(interpolation)); });
}

/// The same picture as a bitmap with alpha first.
Result<std::shared_ptr<const BitmapImageRep>> thumbnail(const Image& image, qint32 size,
                                                        IconFamily::ImageInterpolation interpolation) {
    const Result<QImage> raster = fitted(image, size, interpolation);
    return raster ? captured(*raster) : raster.error();
}

/// An image with this bitmap as its only representation.
Result<Image> imageOf(const std::shared_ptr<const BitmapImageRep>& bitmap) {
    return unlessMemoryIsShort([&] {
        Image image(QSizeF(bitmap->pixelSize()));
        image.addRepresentation(bitmap);
        return image;
    });
}

} // namespace

Image IconFamily::resampleImage(const Image& image, qint32 toIconWidth,
                                ImageInterpolation usingImageInterpolation) {
    const Result<QImage> raster = fitted(image, toIconWidth, usingImageInterpolation);
    if (!raster)
        return {};
    return unlessMemoryIsShort([&] { return imageOf(std::make_shared<const BitmapImageRep>(*raster)); })
        .valueOr({});
}

std::unique_ptr<IconFamily>
IconFamily::initWithThumbnailsOfImage(const Image& image, ImageInterpolation usingImageInterpolation) {
    constexpr qint32 masterSize = 1024;
    std::unique_ptr<IconFamily> family = init();
    const auto bitmap = thumbnail(image, masterSize, usingImageInterpolation);
    if (family == nullptr || !bitmap)
        return nullptr;
    const Result<Image> master = imageOf(*bitmap);
    if (!master)
        return nullptr;
    // This call fails, since 'ic10' takes 512 pixels here. It only logs a line; the family gets no 'ic10'.
    family->setIconFamilyElement("ic10", bitmap->get());
    struct Thumbnail {
        qint32 size;
        FourCharCode type;
    };
    static constexpr std::array thumbnails{Thumbnail{512, "ic09"}, Thumbnail{256, "ic08"},
                                           Thumbnail{128, "ic07"}, Thumbnail{48, "ic06"},
                                           Thumbnail{32, "ic05"},  Thumbnail{16, "ic04"}};
    // A thumbnail that can't be made is left out.
    for (const Thumbnail& wanted : thumbnails) {
        if (const auto made = thumbnail(*master, wanted.size, usingImageInterpolation))
            family->setIconFamilyElement(wanted.type, made->get());
    }
    return family;
}

std::unique_ptr<IconFamily> IconFamily::initWithThumbnailsOfImage(const Image& image) {
    return initWithThumbnailsOfImage(image, ImageInterpolation::High);
}

std::unique_ptr<IconFamily> IconFamily::iconFamilyWithThumbnailsOfImage(const Image& image) {
    return initWithThumbnailsOfImage(image);
}

std::unique_ptr<IconFamily>
IconFamily::iconFamilyWithThumbnailsOfImage(const Image& image, ImageInterpolation usingImageInterpolation) {
    return initWithThumbnailsOfImage(image, usingImageInterpolation);
}

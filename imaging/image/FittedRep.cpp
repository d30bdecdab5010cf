#include "imaging/image/FittedRep.h"

#include "imaging/image/BitmapImageRep.h"
#include "imaging/pixels/Raster.h"
#include "imaging/pixels/Resampler.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace {

/// One axis of the picture's place: the first target pixel that it touches, and how it lies on those from
/// there.
struct Axis {
    int begin;
    AxisMapping mapping;
};

Axis axisOf(double pictureFrom, double pictureLength, double visibleFrom, double visibleTo,
            const AxisMapping& icon) {
    const double limit = icon.targetLength;
    const int begin = static_cast<int>(std::clamp(std::floor(visibleFrom), 0.0, limit));
    const int end = static_cast<int>(std::clamp(std::ceil(visibleTo), 0.0, limit));
    return {begin, {0, pictureFrom - begin, pictureLength, end - begin, icon.filter}};
}

/// The samples that lie in the target, at least in part: `first` and as many as the mapping's source length
/// says. The mapping then holds for them alone.
int cutToTarget(AxisMapping& axis) {
    const double ratio = axis.ratio();
    const auto sampleAt = [&](double target) { return (target - axis.origin) * ratio; };
    // What differs from a whole number by rounding noise alone is not a sample more.
    constexpr double noise = 1e-6;
    const double last = axis.sourceLength;
    const int first = static_cast<int>(std::clamp(std::floor(sampleAt(0) + noise), 0.0, last - 1));
    const int end =
        static_cast<int>(std::clamp(std::ceil(sampleAt(axis.targetLength) - noise), first + 1.0, last));
    if (first == 0 && end == axis.sourceLength)
        return first;
    axis.origin += first / ratio;
    axis.length = (end - first) / ratio;
    axis.sourceLength = end - first;
    return first;
}

/// A bitmap's samples that lie in the target, resampled.
Result<QImage> renderedPart(const BitmapImageRep& bitmap, AxisMapping x, AxisMapping y) {
    Result<QImage> raster = bitmap.raster();
    if (!raster)
        return raster;
    x.sourceLength = raster->width();
    y.sourceLength = raster->height();
    const int left = cutToTarget(x);
    const int top = cutToTarget(y);
    if (QSize(x.sourceLength, y.sourceLength) == raster->size())
        return resampled(*raster, x, y);
    // A view of the raster, which outlives it. A result that is the view itself is copied.
    const QImage view(raster->constScanLine(top) + 4 * static_cast<std::ptrdiff_t>(left), x.sourceLength,
                      y.sourceLength, raster->bytesPerLine(), raster->format());
    Result<QImage> part = resampled(view, x, y);
    if (part && part->constBits() == view.constBits()) {
        if (const Result<Done> own = makeOwn(*part); !own)
            return own.error();
    }
    return part;
}

} // namespace

FittedPart fittedPart(const PictureFit& fit, const QSizeF& picture, const AxisMapping& x,
                      const AxisMapping& y) {
    const auto [whole, visible] = fit.place(picture, QRectF(x.origin, y.origin, x.length, y.length));
    const Axis across = axisOf(whole.left(), whole.width(), visible.left(), visible.right(), x);
    const Axis down = axisOf(whole.top(), whole.height(), visible.top(), visible.bottom(), y);
    return {across.begin, down.begin, across.mapping, down.mapping};
}

Result<QImage> FittedRep::rendered(AxisMapping x, AxisMapping y) const {
    const FittedPart part = fittedPart(m_fit, m_picture.size(), x, y);
    const ImageRep* best = m_picture.bestRepresentation(QSizeF(part.x.length, part.y.length));
    if (best == nullptr || part.x.targetLength <= 0 || part.y.targetLength <= 0)
        return noPixels();
    const auto* bitmap = dynamic_cast<const BitmapImageRep*>(best);
    Result<QImage> drawn =
        bitmap != nullptr ? renderedPart(*bitmap, part.x, part.y) : best->rendered(part.x, part.y);
    if (!drawn)
        return drawn;
    return placed(*drawn, QPoint(part.left, part.top), QSize(x.targetLength, y.targetLength));
}

Image fitted(Image picture, const PictureFit& fit) {
    if (fit.isPlain())
        return picture;
    Image laid(picture.size());
    laid.addRepresentation(std::make_shared<FittedRep>(std::move(picture), fit));
    return laid;
}

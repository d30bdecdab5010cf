#pragma once

#include "imaging/pixels/PictureFit.h"

#include <QRect>
#include <QSize>
#include <QSizeF>

#include <cstddef>
#include <optional>
#include <span>
#include <utility>
#include <vector>

/// Smaller copies of a picture. A small render draws from one of them and need not read the whole picture.
namespace ReducedCopies {

/// The size of the copy that follows `size`. Each side of 64 pixels or more is halved, rounded up; a shorter
/// side stays. Where one side is 16 times as long as the other it alone is reduced, to a quarter. `size`
/// itself where there is no further copy.
QSize nextSize(const QSize& size);

/// The index of the size that a render of `pixels` draws from; `sizes` are those of one picture. It is the
/// size that equals `pixels`. Failing that, it is the smallest size that has in each direction at least twice
/// the pixels of the render, or all pixels of the picture: one proper reduction is then left to do.
/// sizes.size() where no size is enough.
std::size_t bestOf(std::span<const QSize> sizes, const QSizeF& pixels);

/// All sizes, in pixels, of the icons that a picture will be drawn on, and how it lies on them.
struct Renders {
    // NOLINTBEGIN(google-explicit-constructor): the sizes alone are renders without a fit.
    Renders(std::nullopt_t /*unknown*/ = std::nullopt) {}
    Renders(std::vector<QSizeF> known, const PictureFit& how = {}) : sizes(std::move(known)), fit(how) {}
    // NOLINTEND(google-explicit-constructor)

    std::optional<std::vector<QSizeF>> sizes; ///< nullopt where they are not known
    PictureFit fit;

    /// The pixels of a picture of that size that the renders show. All of them where one of the icons is not
    /// square.
    QRect part(const QSize& size) const;
};

/// The largest size that one of the renders draws from: `size`, that of the picture's part, or that of one
/// of its copies. `size` where the renders are not known.
QSize largestNeeded(const QSize& size, const Renders& renders);

} // namespace ReducedCopies

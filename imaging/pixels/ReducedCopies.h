#pragma once

#include <QSize>
#include <QSizeF>

#include <cstddef>
#include <optional>
#include <span>
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

/// All sizes, in pixels, that a picture will be drawn in. nullopt where they are not known.
using Renders = std::optional<std::vector<QSizeF>>;

/// The largest size that one of the renders draws from: `size`, the picture's own, or that of one of its
/// copies. `size` where the renders are not known.
QSize largestNeeded(const QSize& size, const Renders& renders);

} // namespace ReducedCopies

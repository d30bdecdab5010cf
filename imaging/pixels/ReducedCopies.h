#pragma once

#include <QSize>
#include <QSizeF>

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

/// The copies of a picture in smaller sizes that renders draw from, so that small ones need not read all of
/// it.
namespace ReducedCopies {

/// The sides of the next copy: each is halved on its own while that leaves enough of it. Odd ones round up.
/// `size` itself where there is no further copy.
QSize nextSize(const QSize& size);

/// Which of some sizes of one picture a render of `pixels` draws from: that of just as many pixels; else the
/// smallest of at least twice as many in each direction, or as many as there are, so that one proper
/// reduction is left to do. The number of sizes where none is enough.
std::size_t bestOf(std::span<const QSize> sizes, const QSizeF& pixels);

/// Every size, in pixels, that a picture will be drawn in, where that is known.
using Renders = std::optional<std::vector<QSizeF>>;

/// The largest size, of a picture of `size` and its copies, that one of the renders draws from; `size` itself
/// where nothing is known of them.
QSize largestNeeded(const QSize& size, const Renders& renders);

} // namespace ReducedCopies

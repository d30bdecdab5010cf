#include "imaging/pixels/ReducedCopies.h"

#include <algorithm>

QSize ReducedCopies::nextSize(const QSize& size) {
    // No icon gains from a copy with a shorter side.
    constexpr int smallestSide = 32;
    // A picture that is long and thin gets shorter alone first. A render needs all of its thin side, and
    // would else read all of the long one too.
    constexpr int thin = 16;
    const auto quarter = [](int side) { return (side + 3) / 4; };
    if (size.width() >= 4 * smallestSide && size.width() / thin >= size.height())
        return {quarter(size.width()), size.height()};
    if (size.height() >= 4 * smallestSide && size.height() / thin >= size.width())
        return {size.width(), quarter(size.height())};
    const auto reduced = [](int side) { return side >= 2 * smallestSide ? (side + 1) / 2 : side; };
    return {reduced(size.width()), reduced(size.height())};
}

std::size_t ReducedCopies::bestOf(std::span<const QSize> sizes, const QSizeF& pixels) {
    const auto area = [](const QSize& size) { return qint64{size.width()} * size.height(); };
    QSize full;
    for (const QSize& size : sizes)
        full = full.expandedTo(size);
    std::size_t best = sizes.size();
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        const QSize& size = sizes[i];
        if (QSizeF(size) == pixels)
            return i;
        const bool isEnough = (size.width() >= 2 * pixels.width() || size.width() == full.width()) &&
                              (size.height() >= 2 * pixels.height() || size.height() == full.height());
        if (isEnough && (best == sizes.size() || area(size) < area(sizes[best])))
            best = i;
    }
    return best;
}

QRect ReducedCopies::Renders::part(const QSize& size) const {
    const auto isSquare = [](const QSizeF& icon) { return icon.width() == icon.height(); };
    const bool areSquare = sizes && std::ranges::all_of(*sizes, isSquare);
    return areSquare ? fit.squarePart(size) : QRect(QPoint(0, 0), size);
}

QSize ReducedCopies::largestNeeded(const QSize& size, const Renders& renders) {
    if (!renders.sizes)
        return size;
    std::vector<QSize> sizes{size};
    for (QSize next = nextSize(size); next != sizes.back(); next = nextSize(next))
        sizes.push_back(next);
    std::size_t needed = sizes.size() - 1;
    for (const QSizeF& icon : *renders.sizes)
        needed = std::min(needed, bestOf(sizes, renders.fit.drawnSize(size, icon)));
    return sizes[needed];
}

#include "imaging/svg/SvgPlan.h"

#include "imaging/image/FittedRep.h"

using SvgPipe::Request;

namespace {

/// The number of pixels on an icon's axis; 0 where it is no whole number.
int wholePixels(double length) {
    const bool isInRange = length >= 1 && length <= SvgPipe::longestSide;
    const int pixels = isInRange ? static_cast<int>(length) : 0;
    return pixels == length ? pixels : 0;
}

} // namespace

std::optional<Request> SvgPlan::drawing(const AxisMapping& x, const AxisMapping& y) {
    const Request request{x.targetLength, y.targetLength, {x.origin, y.origin, x.length, y.length}};
    return isValid(request) ? std::optional(request) : std::nullopt;
}

std::deque<Request> SvgPlan::drawings(const ReducedCopies::Renders& renders, const QSizeF& document) {
    std::deque<Request> planned;
    for (const QSizeF& icon : renders.sizes.value_or(std::vector<QSizeF>())) {
        const FittedPart part =
            fittedPart(renders.fit, document, fillingMapping(0, wholePixels(icon.width())),
                       fillingMapping(0, wholePixels(icon.height())));
        if (const std::optional<Request> request = drawing(part.x, part.y))
            planned.push_back(*request);
    }
    return planned;
}

#include "imaging/drawing/GraphicsContext.h"
#include "imaging/image/BitmapImageRep.h"
#include "tests/allocation/FailingAllocations.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

namespace {

constexpr int side = 40;
const QRectF bounds(0, 0, side, side);

/// The picture in a context after `decorate`. The context holds a picture of its own size and shares the
/// picture's pixels.
template <typename Decorate>
Result<QImage> drawn(const Image& image, Decorate decorate) {
    Result<GraphicsContext> context = GraphicsContext::create(bounds.size(), 1);
    if (!context)
        return context.error();
    const Result<Done> decorated = decorate(*context, [&] { return context->drawImage(image, bounds); });
    if (!decorated)
        return decorated.error();
    const Result<Image> result = context->image();
    if (!result)
        return result.error();
    return result->largestRaster();
}

template <typename Decorate>
void expectWholeOrNone(Decorate decorate) {
    const QImage picture = Pictures::translucentNoise(side, side, 1);
    Image image(bounds.size());
    image.addRepresentation(std::make_shared<BitmapImageRep>(picture));
    const QImage expected = *drawn(image, decorate);
    const QImage untouched = picture.copy();
    FailingAllocations::expectFailuresOf(
        [&] {
            const Result<QImage> result = drawn(image, decorate);
            EXPECT_TRUE(!result || *result == expected);
            EXPECT_TRUE(picture == untouched);
            return FailingAllocations::hasSucceeded(result);
        },
        FailingAllocations::none);
}

} // namespace

TEST(GraphicsContextAllocations, a_border_is_drawn_or_nothing_is) {
    expectWholeOrNone([](GraphicsContext& context, const auto& drawImage) {
        Path path = Path::bezierPathWithRect(bounds);
        path.setLineWidth(6);
        Result<Done> done = drawImage();
        return done ? context.stroke(path, {1, 0, 0, 1}) : done;
    });
}

TEST(GraphicsContextAllocations, a_corner_is_cut_or_nothing_is_drawn) {
    expectWholeOrNone([](GraphicsContext& context, const auto& drawImage) {
        Result<Done> clipped = context.addClip(Path::bezierPathWithRoundedRect(bounds, 9, 9));
        return clipped ? drawImage() : clipped;
    });
}

TEST(GraphicsContextAllocations, two_pictures_are_drawn_or_none_is) {
    expectWholeOrNone([](GraphicsContext& /*context*/, const auto& drawImage) {
        Result<Done> first = drawImage();
        return first ? drawImage() : first;
    });
}

#include "imaging/drawing/GraphicsContext.h"
#include "imaging/image/BitmapImageRep.h"
#include "tests/allocation/FailingAllocations.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <new>

namespace {

constexpr int side = 40;
const QRectF bounds(0, 0, side, side);

/// What `decorate` makes of a context with a picture of its own size in it, whose pixels it then shares; null
/// where memory is short.
template <typename Decorate>
QImage drawn(const Image& image, Decorate decorate) {
    try {
        GraphicsContext context(bounds.size(), 1);
        decorate(context, [&] { context.drawImage(image, bounds); });
        return context.image().largestRaster();
    } catch (const std::bad_alloc&) {
        return {};
    }
}

template <typename Decorate>
void expectWholeOrNone(Decorate decorate) {
    const QImage picture = Pictures::translucentNoise(side, side, 1);
    Image image(bounds.size());
    image.addRepresentation(std::make_shared<BitmapImageRep>(picture));
    const QImage expected = drawn(image, decorate);
    const QImage untouched = picture.copy();
    FailingAllocations::expectFailuresOf(
        [&] {
            const QImage result = drawn(image, decorate);
            EXPECT_TRUE(result.isNull() || result == expected);
            EXPECT_TRUE(picture == untouched);
            return !result.isNull();
        },
        FailingAllocations::none);
}

} // namespace

TEST(GraphicsContextAllocations, a_border_is_drawn_or_nothing_is) {
    expectWholeOrNone([](GraphicsContext& context, const auto& drawImage) {
        Path path = Path::bezierPathWithRect(bounds);
        path.setLineWidth(6);
        drawImage();
        context.stroke(path, {1, 0, 0, 1});
    });
}

TEST(GraphicsContextAllocations, a_corner_is_cut_or_nothing_is_drawn) {
    expectWholeOrNone([](GraphicsContext& context, const auto& drawImage) {
        context.addClip(Path::bezierPathWithRoundedRect(bounds, 9, 9));
        drawImage();
    });
}

TEST(GraphicsContextAllocations, two_pictures_are_drawn_or_none_is) {
    expectWholeOrNone([](GraphicsContext& /*context*/, const auto& drawImage) {
        drawImage();
        drawImage();
    });
}

#include "platform/widgets/ImageFrame.h"
#include "platform/widgets/ImageView.h"
#include "tests/support/Events.h"
#include "tests/support/Pictures.h"

#include <QEnterEvent>

#include <gtest/gtest.h>

#include <set>

namespace {

/// A view of 64 × 64 points, 8 points inside of its frame.
class ImageFrameTest : public testing::Test {
  protected:
    ImageFrameTest() {
        frame.resize(80, 80);
        view.setGeometry(8, 8, 64, 64);
        frame.surround(view);
    }

    QImage shown() { return frame.grab().toImage(); }

    ImageFrame frame;
    ImageView view{&frame};
};

TEST_F(ImageFrameTest, leaves_the_picture_alone) {
    view.setImage(Pictures::loadedImage(Pictures::flat(64, 64, Qt::red)));
    const QImage picture =
        shown().copy(view.geometry()).convertToFormat(QImage::Format_RGBA8888_Premultiplied);
    EXPECT_EQ(Pictures::largestDifference(picture, Pictures::flat(64, 64, Qt::red)), 0);
}

TEST_F(ImageFrameTest, tells_an_empty_view_from_one_with_a_picture) {
    const auto colorsOfTheEdge = [&] {
        const QImage image = shown();
        std::set<QRgb> colors;
        for (int x = 20; x < 60; ++x)
            colors.insert(image.pixel(x, 1));
        return colors.size();
    };
    EXPECT_GT(colorsOfTheEdge(), 1U) << "dashed";
    view.setImage(Pictures::loadedImage(Pictures::flat(64, 64, Qt::red)));
    EXPECT_EQ(colorsOfTheEdge(), 1U);
}

TEST_F(ImageFrameTest, lights_up_below_the_mouse) {
    view.setImage(Pictures::loadedImage(Pictures::flat(64, 64, Qt::red)));
    const QImage usual = shown();
    QEnterEvent enter(QPointF(5, 5), QPointF(5, 5), QPointF(5, 5));
    QCoreApplication::sendEvent(&view, &enter);
    EXPECT_NE(shown(), usual);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&view, &leave);
    EXPECT_EQ(shown(), usual);
}

TEST_F(ImageFrameTest, a_transparent_picture_lies_on_a_checkerboard_and_an_opaque_one_hides_it) {
    view.setCheckered(true);
    const auto colors = [&](const QColor& color) {
        view.setImage(Pictures::loadedImage(Pictures::flat(64, 64, color)));
        const QImage image = shown();
        return std::set<QRgb>{image.pixel(12, 40), image.pixel(20, 40)};
    };
    EXPECT_EQ(colors(Qt::transparent).size(), 2U);
    EXPECT_EQ(colors(Qt::red), (std::set<QRgb>{qRgb(255, 0, 0)}));
    view.setCheckered(false);
    EXPECT_EQ(colors(Qt::transparent).size(), 1U);
}

} // namespace

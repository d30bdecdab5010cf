#include "platform/widgets/ImageView.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

namespace {

QImage grabbed(QWidget& view) {
    return view.grab().toImage().convertToFormat(QImage::Format_RGBA8888_Premultiplied);
}

const QColor ground(1, 2, 3);

class ImageViewTest : public testing::Test {
  protected:
    ImageViewTest() {
        QPalette colors;
        colors.setColor(QPalette::Window, ground);
        parent.setPalette(colors);
        parent.resize(64, 48);
        view.setGeometry(0, 0, 64, 48);
    }

    QColor at(int x, int y) { return grabbed(parent).pixelColor(x, y); }

    QWidget parent;
    ImageView view{&parent};
};

TEST_F(ImageViewTest, a_picture_of_the_views_size_is_shown_pixel_by_pixel) {
    const QImage noise = Pictures::noise(64, 48, 1);
    view.setImage(Pictures::loadedImage(noise));
    EXPECT_EQ(Pictures::largestDifference(grabbed(parent), noise), 0);
}

TEST_F(ImageViewTest, keeps_the_aspect_ratio_and_centres) {
    view.setImage(Pictures::loadedImage(Pictures::flat(200, 50, Qt::red)));
    // The picture is shown as 64 × 16 in 64 × 48.
    EXPECT_EQ(at(0, 16), QColor(Qt::red));
    EXPECT_EQ(at(63, 31), QColor(Qt::red));
    EXPECT_EQ(at(32, 15), ground);
    EXPECT_EQ(at(32, 32), ground);
}

TEST_F(ImageViewTest, enlarges_a_small_picture) {
    view.setImage(Pictures::loadedImage(Pictures::flat(3, 3, Qt::red)));
    EXPECT_EQ(at(8, 0), QColor(Qt::red));
    EXPECT_EQ(at(55, 47), QColor(Qt::red));
    EXPECT_EQ(at(7, 0), ground);
}

TEST_F(ImageViewTest, another_picture_takes_the_place_of_the_first_and_none_clears) {
    view.setImage(Pictures::loadedImage(Pictures::flat(64, 48, Qt::red)));
    EXPECT_EQ(at(32, 24), QColor(Qt::red));
    view.setImage(Pictures::loadedImage(Pictures::flat(64, 48, Qt::blue)));
    EXPECT_EQ(at(32, 24), QColor(Qt::blue));
    view.setImage({});
    EXPECT_EQ(at(32, 24), ground);
}

TEST_F(ImageViewTest, only_an_empty_view_shows_its_invitation) {
    view.setPlaceholderText(QStringLiteral("Drop"));
    const QImage invitation = grabbed(parent);
    view.setPlaceholderText({});
    const QImage blank = grabbed(parent);
    EXPECT_FALSE(Pictures::same(invitation, blank));
    EXPECT_TRUE(Pictures::same(blank, Pictures::flat(64, 48, ground)));
    view.setImage(Pictures::loadedImage(Pictures::flat(64, 48, Qt::red)));
    view.setPlaceholderText(QStringLiteral("Drop"));
    EXPECT_TRUE(Pictures::same(grabbed(parent), Pictures::flat(64, 48, Qt::red)));
}

TEST_F(ImageViewTest, a_layer_that_masks_cuts_the_picture_along_its_rounded_corners) {
    view.setImage(Pictures::loadedImage(Pictures::flat(64, 48, Qt::red)));
    view.layer().setCornerRadius(16);
    EXPECT_EQ(at(0, 0), QColor(Qt::red)) << "without masking";
    view.layer().setMasksToBounds(true);
    for (const QPoint& corner : {QPoint(0, 0), QPoint(63, 0), QPoint(0, 47), QPoint(63, 47)})
        EXPECT_EQ(at(corner.x(), corner.y()), ground);
    EXPECT_EQ(at(32, 0), QColor(Qt::red));
    EXPECT_EQ(at(0, 24), QColor(Qt::red));
    EXPECT_EQ(at(32, 24), QColor(Qt::red));
    // The corner is antialiased: there are pixels between red and the background.
    int between = 0;
    for (int x = 0; x < 16; ++x) {
        const int red = at(x, 4).red();
        between += red > 1 && red < 255 ? 1 : 0;
    }
    EXPECT_GE(between, 1);
    view.layer().setCornerRadius(0);
    EXPECT_EQ(at(0, 0), QColor(Qt::red));
}

TEST_F(ImageViewTest, a_layer_draws_background_and_border) {
    view.layer().setBackgroundColor(Color{0, 0, 1, 1});
    view.layer().setBorderColor(Color{0, 1, 0, 1});
    view.layer().setBorderWidth(2);
    EXPECT_EQ(at(1, 24), QColor(0, 255, 0));
    EXPECT_EQ(at(2, 24), QColor(Qt::blue));
    view.setImage(Pictures::loadedImage(Pictures::flat(64, 48, Qt::red)));
    EXPECT_EQ(at(2, 24), QColor(Qt::red));
    EXPECT_EQ(at(1, 24), QColor(0, 255, 0));
    view.layer().setBorderWidth(0);
    EXPECT_EQ(at(1, 24), QColor(Qt::red));
}

} // namespace

#include "imaging/pixels/PictureFit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using Shape = PictureFit::Shape;

const QSizeF pictures[] = {{1, 1}, {7, 3}, {3, 7}, {101, 100}, {100, 101}, {1000, 1}, {1, 1000}, {640, 480}};
const QSizeF icons[] = {{1, 1},   {2, 2},   {3, 3},     {16, 16},    {17, 17},
                        {31, 13}, {13, 31}, {300, 200}, {1024, 1024}};
const double paddings[] = {0, 0.01, 0.1, 1.0 / 3, 0.499};

PictureFit::Place placeOf(Shape shape, double padding, const QSizeF& picture, const QSizeF& icon) {
    return PictureFit{shape, padding}.place(picture, QRectF(QPointF(0, 0), icon));
}

bool isWhole(double value) {
    return value == std::round(value);
}

/// Calls `check` with each combination of a picture, an icon and a padding.
template <typename Check>
void forAll(Check check) {
    for (const QSizeF& picture : pictures) {
        for (const QSizeF& icon : icons) {
            for (const double padding : paddings) {
                SCOPED_TRACE(testing::Message() << picture.width() << " x " << picture.height() << " on "
                                                << icon.width() << " x " << icon.height() << ", " << padding);
                check(picture, icon, padding);
            }
        }
    }
}

} // namespace

TEST(PictureFit, a_stretched_picture_fills_the_icon) {
    for (const QSizeF& icon : icons)
        EXPECT_EQ(placeOf(Shape::Stretch, 0, {7, 3}, icon).picture, QRectF(QPointF(0, 0), icon));
}

TEST(PictureFit, margins_are_whole_pixels_and_the_same_on_opposite_edges) {
    for (const Shape shape : {Shape::Stretch, Shape::Contain, Shape::Cover}) {
        forAll([&](const QSizeF& picture, const QSizeF& icon, double padding) {
            const QRectF visible = placeOf(shape, padding, picture, icon).visible;
            EXPECT_TRUE(isWhole(visible.left()) && isWhole(visible.top()));
            EXPECT_EQ(visible.left(), icon.width() - visible.right());
            EXPECT_EQ(visible.top(), icon.height() - visible.bottom());
            EXPECT_GE(visible.width(), 1);
            EXPECT_GE(visible.height(), 1);
        });
    }
}

TEST(PictureFit, padding_is_a_part_of_the_shorter_side) {
    EXPECT_EQ(placeOf(Shape::Stretch, 0.1, {7, 3}, {300, 200}).visible, QRectF(20, 20, 260, 160));
    EXPECT_EQ(placeOf(Shape::Stretch, 0.1, {7, 3}, {17, 17}).visible, QRectF(2, 2, 13, 13));
    EXPECT_EQ(placeOf(Shape::Cover, 0.25, {7, 3}, {100, 100}).visible, QRectF(25, 25, 50, 50));
}

TEST(PictureFit, a_contained_picture_keeps_its_shape_within_a_pixel_and_touches_two_edges) {
    forAll([](const QSizeF& picture, const QSizeF& icon, double padding) {
        const QRectF frame = placeOf(Shape::Stretch, padding, picture, icon).visible;
        const PictureFit::Place place = placeOf(Shape::Contain, padding, picture, icon);
        EXPECT_EQ(place.picture, place.visible);
        EXPECT_TRUE(frame.contains(place.picture));
        EXPECT_TRUE(place.picture.width() == frame.width() || place.picture.height() == frame.height());
        const double scale = std::min(frame.width() / picture.width(), frame.height() / picture.height());
        EXPECT_LE(std::abs(place.picture.width() - std::max(1.0, picture.width() * scale)), 1.0001);
        EXPECT_LE(std::abs(place.picture.height() - std::max(1.0, picture.height() * scale)), 1.0001);
    });
}

TEST(PictureFit, a_covering_picture_keeps_its_shape_and_its_middle) {
    forAll([](const QSizeF& picture, const QSizeF& icon, double padding) {
        const PictureFit::Place place = placeOf(Shape::Cover, padding, picture, icon);
        EXPECT_EQ(place.visible, placeOf(Shape::Stretch, padding, picture, icon).visible);
        EXPECT_TRUE(place.picture.contains(place.visible));
        EXPECT_NEAR(place.picture.width() * picture.height(), place.picture.height() * picture.width(),
                    1e-9 * place.picture.width() * picture.height());
        EXPECT_NEAR(place.picture.center().x(), icon.width() / 2, 1e-9 * place.picture.width());
        EXPECT_NEAR(place.picture.center().y(), icon.height() / 2, 1e-9 * place.picture.height());
    });
}

TEST(PictureFit, a_square_shows_the_middle_of_a_covering_picture) {
    const PictureFit cover{Shape::Cover, 0};
    EXPECT_EQ(cover.squarePart({203, 101}), QRect(51, 0, 101, 101));
    EXPECT_EQ(cover.squarePart({204, 101}), QRect(51, 0, 102, 101)) << "two half pixels are shown";
    EXPECT_EQ(cover.squarePart({5, 1000}), QRect(0, 497, 5, 6));
    EXPECT_EQ(cover.squarePart({9, 9}), QRect(0, 0, 9, 9));
    EXPECT_EQ((PictureFit{Shape::Contain, 0}).squarePart({203, 101}), QRect(0, 0, 203, 101));
}

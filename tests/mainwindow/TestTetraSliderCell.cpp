#include "imaging/drawing/Shadow.h"
#include "mainwindow/TetraSliderCell.h"
#include "platform/widgets/QtColor.h"
#include "tests/support/Events.h"
#include "tests/support/Pictures.h"

#include <QElapsedTimer>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace {

using Cell = TetraSliderCell;

TEST(TetraSliderCell, places_the_knob_to_the_right_of_the_middle_of_a_wider_rectangle) {
    EXPECT_EQ(Cell::knobCircle(QRectF(0, 0, 21, 21)), QRectF(7.5, 5.5, 11, 11));
    EXPECT_EQ(Cell::knobDot(QRectF(0, 0, 21, 21)), QRectF(11.5, 9.5, 3, 3));
    EXPECT_EQ(Cell::knobCircle(QRectF(30, 4, 12, 12)), QRectF(30.5, 4.5, 11, 11));
    EXPECT_EQ(Cell::knobDot(QRectF(30, 4, 12, 12)).center(),
              Cell::knobCircle(QRectF(30, 4, 12, 12)).center());
    // In a rectangle narrower than 12 the circle begins to the left of it.
    EXPECT_EQ(Cell::knobCircle(QRectF(0, 0, 9, 12)).x(), -2 + 0.5);
    EXPECT_EQ(Cell::knobCircle(QRectF(0, 0, 12.5, 12)).x(), 1 + 0.5);
}

TEST(TetraSliderCell, places_the_track_in_the_bar) {
    EXPECT_EQ(Cell::track(QRectF(7, 9, 100, 12)), QRectF(8, 12, 98, 5));
    EXPECT_EQ(Cell::track(QRectF(0, 0, 100.4, 12)).width(), 98);
    EXPECT_EQ(Cell::track(QRectF(0, 0, 100.5, 12)).width(), 99);
    EXPECT_EQ(Cell::track(QRectF(0, 0, 100, 21)).y(), 5 + 3);
    EXPECT_EQ(Cell::track(QRectF(0, 0, 100, 9)).y(), -1 + 3);
}

TEST(TetraSliderCell, the_inner_shadows_frame_is_the_blur_and_the_turned_offset_and_one_point_larger) {
    // The rectangle (10, 20, 98, 5), grown by 5, moved by (-0.1, +0.1), united with the rectangle before
    // that, grown by 1.
    const QRectF frame = Cell::innerShadowFrame(QRectF(10, 20, 98, 5));
    EXPECT_NEAR(frame.left(), 10 - 5 - 0.1 - 1, 1e-12);
    EXPECT_NEAR(frame.right(), 108 + 5 - 0.1 + 1, 1e-12);
    EXPECT_NEAR(frame.top(), 20 - 5 + 0.1 - 1, 1e-12);
    EXPECT_NEAR(frame.bottom(), 25 + 5 + 0.1 + 1, 1e-12);
}

/// What `draw` draws, with y upward, on a transparent picture of 120 × 24 points.
QImage drawn(int scale, const std::function<void(Cell&, QPainter&)>& draw) {
    QImage picture(120 * scale, 24 * scale, QImage::Format_RGBA8888_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(0);
    QPainter painter(&picture);
    painter.translate(0, 24);
    painter.scale(1, -1);
    Cell cell;
    draw(cell, painter);
    painter.end();
    picture.setDevicePixelRatio(1);
    return picture;
}

QImage bar(int scale, bool flipped = false) {
    return drawn(scale, [&](Cell& cell, QPainter& painter) {
        cell.drawBarInside(painter, QRectF(10, 6, 100, 12), flipped);
    });
}

QImage knob(int scale) {
    return drawn(scale, [](Cell& cell, QPainter& painter) { cell.drawKnob(painter, QRectF(50, 6, 12, 12)); });
}

TEST(TetraSliderCell, the_flipped_flag_changes_nothing) {
    EXPECT_TRUE(Pictures::same(bar(1, false), bar(1, true)));
}

TEST(TetraSliderCell, draws_the_same_each_time) {
    EXPECT_TRUE(Pictures::same(bar(2), bar(2)));
    EXPECT_TRUE(Pictures::same(knob(2), knob(2)));
}

TEST(TetraSliderCell, the_track_is_darkest_at_the_smaller_y_and_inside_its_edges) {
    constexpr int scale = 8;
    const QImage picture = bar(scale);
    // The pixel at `y` points from the bottom, at the track's middle. The track lies from 9 to 14.
    const auto at = [&](double y) {
        return picture.pixelColor(60 * scale, static_cast<int>((24 - y) * scale));
    };
    EXPECT_LT(at(10.5).red(), at(12.5).red());
    for (const double y : {10.0, 11.5, 13.0})
        EXPECT_EQ(at(y).alpha(), 255);
    // The gradient goes from 0.1 to 0.175. The inner shadow makes it darker.
    EXPECT_LT(at(11.5).red(), qRound(0.154 * 255));
    EXPECT_GT(at(11.5).red(), 10);
    EXPECT_EQ(at(15.5).alpha(), 0) << "above";
    EXPECT_EQ(at(7).alpha(), 0) << "below the drop shadow's reach";
}

TEST(TetraSliderCell, the_drop_shadow_is_a_sharp_edge_below_the_track) {
    constexpr int scale = 8;
    const QImage picture = bar(scale);
    // The shadow shows from 9 - 1.1 to 9. The outline covers its upper half point.
    const QColor edge = picture.pixelColor(60 * scale, static_cast<int>((24 - 8.2) * scale));
    EXPECT_EQ(edge, QColor(83, 83, 83));
}

TEST(TetraSliderCell, nothing_is_painted_outside_of_the_shadows_reach) {
    for (const int scale : {1, 2, 3}) {
        const QImage picture = bar(scale);
        // The reach of the track's outline and drop shadow.
        const QRectF reach = QRectF(11, 9, 98, 5).adjusted(-0.5, -1.1, 0.6, 0.5);
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QRectF pixel(static_cast<double>(x) / scale, 24 - (y + 1.0) / scale, 1.0 / scale,
                                   1.0 / scale);
                const bool isPainted = picture.pixelColor(x, y).alpha() > 0;
                ASSERT_TRUE(!isPainted || pixel.intersects(reach)) << x << " " << y << " at " << scale;
            }
        }
    }
}

TEST(TetraSliderCell, the_knob_is_light_below_and_bluish_above_with_a_dot_in_its_middle) {
    constexpr int scale = 8;
    const QImage picture = knob(scale);
    const auto at = [&](double x, double y) {
        return picture.pixelColor(static_cast<int>(x * scale), static_cast<int>((24 - y) * scale));
    };
    // The circle lies from (50.5, 6.5) to (61.5, 17.5).
    const QColor low = at(56, 8);
    const QColor high = at(56, 16.5);
    EXPECT_GT(low.red(), 220);
    EXPECT_NEAR(low.alpha(), qRound(255 * (0.759 + 0.241 * (8 - 6.27) / 11.46)), 4);
    EXPECT_LT(high.red(), 130);
    EXPECT_GT(high.blue(), high.red() + 30);
    EXPECT_LT(at(56, 12).red(), at(59, 12).red()) << "the dot";
    EXPECT_EQ(at(62.5, 12).alpha(), 0);
    // The knob is symmetric from left to right.
    EXPECT_LE(Pictures::largestDifference(
                  picture.copy(50 * scale, 0, 12 * scale, 24 * scale),
                  Pictures::mirroredLeftRight(picture.copy(50 * scale, 0, 12 * scale, 24 * scale))),
              2);
}

TEST(TetraSliderCell, looks_as_it_was_approved) {
    for (const int scale : {1, 2}) {
        QImage picture = drawn(scale, [](Cell& cell, QPainter& painter) {
            painter.fillRect(QRectF(0, 0, 120, 24), QColor(240, 240, 242));
            cell.drawBarInside(painter, QRectF(10, 6, 100, 12), false);
            cell.drawKnob(painter, QRectF(50, 6, 12, 12));
        });
        const QString name = QStringLiteral("slider-at-%1.png").arg(scale);
        const QImage approved = QImage(QStringLiteral(TEST_DATA_DIR "/widgets/") + name)
                                    .convertToFormat(QImage::Format_RGBA8888_Premultiplied);
        const bool isSame =
            approved.size() == picture.size() && Pictures::largestDifference(approved, picture) <= 2;
        EXPECT_TRUE(isSame) << name.toStdString() << ": the picture of now is beside the test program";
        if (!isSame)
            picture.save(QCoreApplication::applicationDirPath() + QLatin1Char('/') + name);
    }
}

TEST(Shadow, a_blur_is_a_gaussian_of_half_its_radius_at_any_scale) {
    constexpr double radius = 6;
    for (const double scale : {1.0, 1.5, 2.0}) {
        QImage picture(qRound(200 * scale), qRound(40 * scale), QImage::Format_RGBA8888_Premultiplied);
        picture.fill(0);
        QPainter painter(&picture);
        painter.scale(scale, scale);
        QPainterPath edge;
        edge.addRect(-100, -100, 200, 300);
        QPainterPath everywhere;
        everywhere.addRect(0, 0, 200, 40);
        EXPECT_TRUE(drawShadow(painter, edge, {{0, 0, 0, 1}, {0, 0}, radius}, everywhere));
        painter.end();
        // Beside a straight edge at x = 100 the coverage follows the normal distribution.
        for (int x = qRound(85 * scale); x < qRound(115 * scale); ++x) {
            const double distance = (x + 0.5) / scale - 100;
            const double expected = 255 * 0.5 * std::erfc(distance / (radius / 2) / std::sqrt(2.0));
            EXPECT_NEAR(picture.pixelColor(x, qRound(20 * scale)).alpha(), expected, 2.5)
                << x << " at " << scale;
        }
    }
}

TEST(TetraSliderCell, the_inner_shadow_is_that_of_the_frame_thrown_back_by_a_fifth_of_a_point) {
    constexpr int scale = 8;
    const QImage picture = bar(scale);
    // Across the middle of the track, from y = 9 to 14. The frame beyond both edges, moved up by 0.2, throws
    // its shadow onto the gradient. The frame is 6 points wide there, more than the blur reaches.
    const auto cumulative = [](double distance) { return 0.5 * std::erfc(-distance / 2.5 / std::sqrt(2.0)); };
    for (double y = 10; y <= 13; y += 0.25) {
        const double share = (y - 9) / 5;
        const double fill = share < 0.5 ? 0.101 + (0.154 - 0.101) * share / 0.5
                                        : 0.154 + (0.175 - 0.154) * (share - 0.5) / 0.5;
        const double below = cumulative(9.2 - y) - cumulative(9.2 - 6.1 - y);
        const double above = cumulative(y - 14.2) - cumulative(y - 14.2 - 6.1);
        const double expected = 255 * fill * (1 - 0.376 * (below + above));
        const int row = static_cast<int>((24 - y) * scale);
        EXPECT_NEAR(picture.pixelColor(60 * scale, row).red(), expected, 1.6) << y;
    }
}

TEST(Shadow, is_thrown_by_its_offset_and_cut_by_its_clip) {
    QImage picture(40, 40, QImage::Format_RGBA8888_Premultiplied);
    picture.fill(0);
    QPainter painter(&picture);
    QPainterPath shape;
    shape.addRect(0, 0, 10, 10);
    QPainterPath clip;
    clip.addRect(20, 0, 8, 40);
    EXPECT_TRUE(drawShadow(painter, shape, {{1, 0, 0, 0.5}, {20, 5}, 0}, clip));
    painter.end();
    EXPECT_EQ(picture.pixelColor(5, 5).alpha(), 0) << "not the shape itself";
    EXPECT_EQ(picture.pixelColor(24, 10), QColor(255, 0, 0, 128));
    EXPECT_EQ(picture.pixelColor(24, 4).alpha(), 0);
    EXPECT_EQ(picture.pixelColor(29, 10).alpha(), 0);
}

class TetraSliderTest : public testing::Test {
  protected:
    TetraSliderTest() {
        slider.resize(160, slider.sizeHint().height());
        slider.show();
        QObject::connect(&slider, &FloatSlider::action, &slider, [this] { ++actions; });
    }

    QRect knobRect() {
        class Opened final : public QSlider {
          public:
            using QSlider::initStyleOption;
        };
        QStyleOptionSlider option;
        static_cast<Opened&>(static_cast<QSlider&>(slider)).initStyleOption(&option);
        return slider.style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, &slider);
    }

    QImage shown() { return slider.grab().toImage().convertToFormat(QImage::Format_RGBA8888_Premultiplied); }

    TetraSlider slider;
    int actions = 0;
};

TEST_F(TetraSliderTest, the_knob_goes_from_end_to_end_of_the_bar) {
    EXPECT_EQ(knobRect(), QRect(0, (slider.height() - 12) / 2, 12, 12));
    slider.setFloatValue(1);
    EXPECT_EQ(knobRect().left(), 160 - 12);
    slider.setFloatValue(0.5F);
    EXPECT_EQ(knobRect().left(), 74);
}

TEST_F(TetraSliderTest, the_track_does_not_change_with_the_value) {
    slider.setFloatValue(0);
    const QImage left = shown();
    slider.setFloatValue(1);
    const QImage right = shown();
    const QRect middle(20, 0, 120, slider.height());
    EXPECT_TRUE(Pictures::same(left.copy(middle), right.copy(middle)));
    EXPECT_FALSE(Pictures::same(left, right));
}

TEST_F(TetraSliderTest, the_mouse_takes_the_knob_where_it_is_drawn) {
    slider.setFloatValue(0.5F);
    const QPointF middle = QRectF(knobRect()).center();
    Events::mouse(&slider, QEvent::MouseButtonPress, middle);
    EXPECT_TRUE(slider.isSliderDown());
    Events::mouse(&slider, QEvent::MouseMove, middle + QPointF(37, 0));
    EXPECT_EQ(slider.floatValue(), 0.75F);
    EXPECT_EQ(actions, 1);
    Events::mouse(&slider, QEvent::MouseButtonRelease, middle + QPointF(37, 0));
    // A press beside the knob moves it by a page.
    Events::mouse(&slider, QEvent::MouseButtonPress, QPointF(5, middle.y()));
    EXPECT_FALSE(slider.isSliderDown());
    EXPECT_LT(slider.floatValue(), 0.75F);
}

TEST_F(TetraSliderTest, shows_the_focus_and_that_it_is_disabled) {
    const QImage plain = shown();
    slider.activateWindow();
    slider.setFocus();
    Events::settle();
    EXPECT_FALSE(Pictures::same(plain, shown()));
    slider.clearFocus();
    slider.setEnabled(false);
    const QImage disabled = shown();
    EXPECT_GT(disabled.pixelColor(100, slider.height() / 2).lightness(),
              plain.pixelColor(100, slider.height() / 2).lightness());
}

} // namespace

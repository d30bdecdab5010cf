#include "platform/widgets/RoundedClip.h"
#include "shell/ELGRoundWindow.h"
#include "tests/support/Events.h"

#include <QLabel>

#include <gtest/gtest.h>

#include <memory>

namespace {

/// A view of one colour.
std::unique_ptr<QWidget> colored(const QColor& color) {
    auto view = std::make_unique<QWidget>();
    QPalette colors;
    colors.setColor(QPalette::Window, color);
    view->setPalette(colors);
    return view;
}

QImage grabbed(QWidget& window, int scale) {
    QImage shown(window.size() * scale, QImage::Format_ARGB32_Premultiplied);
    shown.setDevicePixelRatio(scale);
    shown.fill(Qt::transparent);
    window.render(&shown);
    return shown;
}

TEST(RoundWindow, is_borderless_whatever_is_asked_for) {
    const ELGRoundWindow window(QRect(10, 20, 200, 100),
                                Qt::Dialog | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    EXPECT_TRUE(window.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(window.windowType(), Qt::Window);
    EXPECT_TRUE(window.testAttribute(Qt::WA_TranslucentBackground));
    EXPECT_EQ(window.geometry(), QRect(10, 20, 200, 100));
}

TEST(RoundWindow, cuts_its_content_with_everything_in_it_along_corners_of_20_points) {
    ELGRoundWindow window(QRect(0, 0, 200, 100));
    std::unique_ptr<QWidget> view = colored(Qt::red);
    std::unique_ptr<QWidget> inside = colored(Qt::blue);
    inside->setAutoFillBackground(true);
    inside->setParent(view.get());
    inside->setGeometry(0, 0, 30, 30);
    window.setContentView(view.get());
    window.show();
    for (const int scale : {1, 2}) {
        const QImage shown = grabbed(window, scale);
        for (const QPoint& corner : {QPoint(0, 0), QPoint(199, 0), QPoint(0, 99), QPoint(199, 99)})
            EXPECT_EQ(shown.pixelColor(corner * scale).alpha(), 0);
        // On the diagonal the circle begins 20 × (1 − √½) = 5.86 points from each of the two sides.
        EXPECT_EQ(shown.pixelColor(5 * scale - 1, 5 * scale - 1).alpha(), 0);
        EXPECT_EQ(shown.pixelColor(7 * scale, 7 * scale), QColor(Qt::blue));
        EXPECT_EQ(shown.pixelColor(193 * scale, 93 * scale - 1), QColor(Qt::red));
        EXPECT_EQ(shown.pixelColor(100 * scale, 0), QColor(Qt::red));
        EXPECT_EQ(shown.pixelColor(0, 50 * scale), QColor(Qt::red));
        int between = 0;
        for (int x = 0; x < 20 * scale; ++x) {
            const int alpha = shown.pixelColor(x, 2 * scale).alpha();
            between += alpha > 0 && alpha < 255 ? 1 : 0;
        }
        EXPECT_GE(between, 1) << "antialiased";
    }
    inside->setParent(nullptr);
}

TEST(RoundWindow, leaves_its_corners_to_the_windows_behind_and_keeps_the_whole_edge) {
    ELGRoundWindow window(QRect(0, 0, 200, 100));
    std::unique_ptr<QWidget> view = colored(Qt::red);
    window.setContentView(view.get());
    window.show();
    Events::settle();
    for (const QSize& size : {QSize(200, 100), QSize(131, 77)}) {
        window.resize(size);
        Events::settle();
        const QRegion mask = window.mask();
        window.clearMask();
        const QImage shown = grabbed(window, 1);
        window.setMask(mask);
        int cut = 0;
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                const bool isKept = mask.contains(QPoint(x, y));
                EXPECT_TRUE(isKept || shown.pixelColor(x, y).alpha() == 0) << x << ' ' << y;
                cut += isKept ? 0 : 1;
            }
        }
        // Four corners of 20 × 20 points, each without the quarter of a circle: 343 points, less the edge.
        EXPECT_GE(cut, 260);
        EXPECT_LE(cut, 343);
    }
    view->setParent(nullptr);
}

TEST(RoundWindow, a_later_content_view_is_rounded_and_the_earlier_one_keeps_its_rounding) {
    ELGRoundWindow window(QRect(0, 0, 200, 100));
    std::unique_ptr<QWidget> first = colored(Qt::red);
    std::unique_ptr<QWidget> second = colored(Qt::green);
    window.setContentView(first.get());
    window.setContentView(second.get());
    EXPECT_EQ(window.contentView(), second.get());
    EXPECT_EQ(first->parentWidget(), nullptr);
    for (const QWidget* view : {first.get(), second.get()}) {
        const auto* clip = qobject_cast<RoundedClip*>(view->graphicsEffect());
        ASSERT_NE(clip, nullptr);
        EXPECT_EQ(clip->radius(), 20);
    }
    window.show();
    EXPECT_EQ(grabbed(window, 1).pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(grabbed(window, 1).pixelColor(100, 50), QColor(Qt::green));
    second->setParent(nullptr);
}

TEST(RoundWindow, its_content_follows_its_size) {
    ELGRoundWindow window(QRect(0, 0, 200, 100));
    std::unique_ptr<QWidget> view = colored(Qt::red);
    window.setContentView(view.get());
    window.show();
    window.resize(300, 150);
    Events::settle();
    EXPECT_EQ(view->geometry(), QRect(0, 0, 300, 150));
    window.setContentView(nullptr);
    EXPECT_EQ(view->parentWidget(), nullptr);
}

} // namespace

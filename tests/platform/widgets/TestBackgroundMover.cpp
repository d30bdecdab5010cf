#include "platform/widgets/BackgroundMover.h"
#include "tests/support/Events.h"

#include <QPushButton>

#include <gtest/gtest.h>

namespace {

class BackgroundMoverTest : public testing::Test {
  protected:
    BackgroundMoverTest() {
        window.setWindowFlag(Qt::FramelessWindowHint);
        window.setGeometry(100, 120, 200, 150);
        button.setGeometry(0, 100, 200, 50);
        new BackgroundMover(window);
        window.show();
        Events::settle();
    }

    /// Drags from a point of the window by `way`, in two moves.
    void drag(QWidget& pressed, const QPoint& from, const QPoint& way,
              Qt::MouseButton held = Qt::LeftButton) {
        const QPoint onScreen = start + from;
        const auto send = [&](QEvent::Type type, const QPoint& mouse) {
            // The window may have followed the mouse meanwhile.
            Events::mouse(&pressed, type, pressed.mapFromGlobal(mouse), held);
            Events::settle();
        };
        send(QEvent::MouseButtonPress, onScreen);
        send(QEvent::MouseMove, onScreen + way / 2);
        send(QEvent::MouseMove, onScreen + way);
        send(QEvent::MouseButtonRelease, onScreen + way);
    }

    const QPoint start{100, 120};
    QWidget window;
    QPushButton button{&window};
};

TEST_F(BackgroundMoverTest, the_window_follows_a_drag_of_its_background) {
    drag(window, {6, 7}, {-40, 60});
    EXPECT_EQ(window.pos(), start + QPoint(-40, 60));
}

TEST_F(BackgroundMoverTest, a_hand_that_trembles_does_not_move_it) {
    drag(window, {6, 7}, {2, 3});
    EXPECT_EQ(window.pos(), start);
}

TEST_F(BackgroundMoverTest, other_buttons_and_controls_do_not_move_it) {
    drag(window, {6, 7}, {-40, 60}, Qt::RightButton);
    EXPECT_EQ(window.pos(), start);
    drag(button, {6, 107}, {-40, 60});
    EXPECT_EQ(window.pos(), start);
}

TEST_F(BackgroundMoverTest, it_stays_when_the_button_is_up) {
    drag(window, {6, 7}, {-40, 60});
    Events::mouse(&window, QEvent::MouseMove, {90, 90}, Qt::NoButton);
    EXPECT_EQ(window.pos(), start + QPoint(-40, 60));
}

} // namespace

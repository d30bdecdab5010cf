#include "platform/widgets/BackgroundMover.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

namespace {

bool systemMoves(QWindow& window) {
    // Under X11, Qt tells the window manager where it believes the window to be. Now and then that is (0, 0),
    // and the window jumps away from the mouse.
    return QGuiApplication::platformName() != QLatin1String("xcb") && window.startSystemMove();
}

} // namespace

BackgroundMover::BackgroundMover(QWidget& window) : QObject(&window) {
    window.installEventFilter(this);
}

bool BackgroundMover::eventFilter(QObject* watched, QEvent* event) {
    // What no control takes comes to the window.
    if (event->type() == QEvent::MouseButtonPress) {
        const auto* press = static_cast<QMouseEvent*>(event);
        m_pressed.reset();
        m_moves = false;
        if (press->button() == Qt::LeftButton)
            m_pressed = Press{press->position(), press->globalPosition()};
    } else if (event->type() == QEvent::MouseButtonRelease) {
        m_pressed.reset();
    } else if (event->type() == QEvent::MouseMove && m_pressed) {
        if (QWindow* handle = qobject_cast<QWidget*>(watched)->windowHandle())
            drag(*handle, static_cast<QMouseEvent*>(event)->globalPosition());
    }
    return QObject::eventFilter(watched, event);
}

void BackgroundMover::drag(QWindow& window, QPointF mouse) {
    // Not at the press: after a click of a few milliseconds, some window managers begin to move the
    // window when the button is up already. It then hangs on the mouse, and the next key is theirs.
    const QPointF way = mouse - m_pressed->onScreen;
    if (!m_moves && way.manhattanLength() < QApplication::startDragDistance())
        return;
    if (!m_moves && systemMoves(window)) {
        m_pressed.reset();
        return;
    }
    m_moves = true;
    window.setPosition((mouse - m_pressed->inWindow).toPoint());
}

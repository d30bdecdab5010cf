#include "platform/widgets/BackgroundMover.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

BackgroundMover::BackgroundMover(QWidget& window) : QObject(&window) {
    window.installEventFilter(this);
}

bool BackgroundMover::eventFilter(QObject* watched, QEvent* event) {
    // What no control takes comes to the window.
    if (event->type() == QEvent::MouseButtonPress) {
        const auto* press = static_cast<QMouseEvent*>(event);
        m_pressed.reset();
        if (press->button() == Qt::LeftButton)
            m_pressed = press->globalPosition().toPoint();
    } else if (event->type() == QEvent::MouseButtonRelease) {
        m_pressed.reset();
    } else if (event->type() == QEvent::MouseMove && m_pressed) {
        // Not at the press: after a click of a few milliseconds, some window managers begin to move the
        // window when the button is up already. It then hangs on the mouse, and the next key is theirs.
        const QPoint way = static_cast<QMouseEvent*>(event)->globalPosition().toPoint() - *m_pressed;
        if (way.manhattanLength() >= QApplication::startDragDistance()) {
            m_pressed.reset();
            if (QWindow* handle = qobject_cast<QWidget*>(watched)->windowHandle())
                handle->startSystemMove();
        }
    }
    return QObject::eventFilter(watched, event);
}

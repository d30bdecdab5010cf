#include "platform/widgets/BackgroundMover.h"

#include <QMouseEvent>
#include <QWindow>

BackgroundMover::BackgroundMover(QWidget& window) : QObject(&window) {
    window.installEventFilter(this);
}

bool BackgroundMover::eventFilter(QObject* watched, QEvent* event) {
    // A press that no control takes comes to the window.
    if (event->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        if (QWindow* handle = qobject_cast<QWidget*>(watched)->windowHandle())
            handle->startSystemMove();
    }
    return QObject::eventFilter(watched, event);
}

#pragma once

#include <QApplication>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QThread>
#include <QWidget>

#include <functional>

/// What a user does to widgets, as events.
namespace Events {

/// Delivers all queued events.
inline void settle() {
    for (int i = 0; i < 5; ++i) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

/// Delivers events until `condition` holds. False if it does not within ten seconds.
inline bool waitFor(const std::function<bool()>& condition) {
    constexpr int limit = 10'000;
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > limit)
            return false;
        settle();
        QThread::msleep(1);
    }
    return true;
}

inline void key(QWidget* widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                const QString& text = {}) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers, text);
        QCoreApplication::sendEvent(widget, &event);
    }
}

inline void mouse(QWidget* widget, QEvent::Type type, const QPointF& at,
                  Qt::MouseButton button = Qt::LeftButton) {
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::MouseButtons() : button;
    QMouseEvent event(type, at, widget->mapToGlobal(at), button, held, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

inline void click(QWidget* widget) {
    const QPointF middle = QRectF(widget->rect()).center();
    mouse(widget, QEvent::MouseButtonPress, middle);
    mouse(widget, QEvent::MouseButtonRelease, middle);
}

} // namespace Events

#include "platform/widgets/FontFollower.h"

#include <QEvent>

#include <utility>

FontFollower::FontFollower(QWidget& widget, std::function<void(const QFontMetrics& metrics)> follow)
    : QObject(&widget), m_follow(std::move(follow)) {
    m_follow(widget.fontMetrics());
    widget.installEventFilter(this);
}

bool FontFollower::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FontChange)
        m_follow(static_cast<QWidget*>(watched)->fontMetrics());
    return QObject::eventFilter(watched, event);
}

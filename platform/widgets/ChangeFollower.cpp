#include "platform/widgets/ChangeFollower.h"

#include <utility>

ChangeFollower::ChangeFollower(QWidget& widget, QEvent::Type change, QObject& owner,
                               std::function<void()> follow)
    : QObject(&owner), m_change(change), m_follow(std::move(follow)) {
    m_follow();
    widget.installEventFilter(this);
}

bool ChangeFollower::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == m_change)
        m_follow();
    return QObject::eventFilter(watched, event);
}

#include "platform/widgets/EnabledFollower.h"

#include <QEvent>

#include <utility>

EnabledFollower::EnabledFollower(QWidget& control, QObject& owner, std::function<void(bool isEnabled)> follow)
    : QObject(&owner), m_follow(std::move(follow)) {
    m_follow(control.isEnabled());
    control.installEventFilter(this);
}

bool EnabledFollower::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::EnabledChange)
        m_follow(static_cast<QWidget*>(watched)->isEnabled());
    return QObject::eventFilter(watched, event);
}

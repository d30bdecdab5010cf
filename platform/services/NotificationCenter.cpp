#include "platform/services/NotificationCenter.h"

#include <utility>

NotificationCenter& NotificationCenter::defaultCenter() {
    static NotificationCenter center;
    return center;
}

void NotificationCenter::addObserver(QObject* observer, const QString& name, Handler handler) {
    m_observations.push_back({observer, name, std::move(handler)});
}

void NotificationCenter::postNotification(const QString& name, QObject* object) {
    std::erase_if(m_observations, [](const Observation& o) { return o.observer.isNull(); });
    const Notification notification{
        name, object, object != nullptr ? QByteArray(object->metaObject()->className()) : QByteArray()};
    // A copy, because handlers may add observers.
    const std::vector<Observation> observations = m_observations;
    for (const Observation& observation : observations) {
        if (observation.name == name && !observation.observer.isNull())
            observation.handler(notification);
    }
}

#pragma once

#include <QEvent>
#include <QObject>
#include <QStringList>

/// Records which of the watched objects received an event of one type, in order.
class EventRecorder final : public QObject {
  public:
    explicit EventRecorder(QEvent::Type type) : m_type(type) {}

    QStringList received; ///< object names

    void watch(QObject* object) { object->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == m_type)
            received << watched->objectName();
        return false;
    }

  private:
    QEvent::Type m_type;
};

#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <vector>

/// A named message and the object that it is about.
struct Notification {
    QString name;
    /// Null where the message has no object, or once the object is destroyed.
    QPointer<QObject> object;
    /// The name of the object's class when the notification was posted. Empty without an object.
    QByteArray objectClassName;
};

/// Passes each notification to all observers of its name. Main thread only.
class NotificationCenter {
  public:
    using Handler = std::function<void(const Notification&)>;

    /// The center that the whole process shares.
    static NotificationCenter& defaultCenter();

    /// From now on, calls `handler` for each notification `name`, from any sender, as long as `observer`
    /// lives.
    void addObserver(QObject* observer, const QString& name, Handler handler);

    /// Calls the handlers at once, in the order in which they were added. A handler that is added meanwhile
    /// is first called for the next notification. `object` may be null.
    void postNotification(const QString& name, QObject* object = nullptr);

  private:
    struct Observation {
        QPointer<QObject> observer;
        QString name;
        Handler handler;
    };
    std::vector<Observation> m_observations;
};

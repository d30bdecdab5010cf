#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>
#include <vector>

/// A named message and what it is about.
struct Notification {
    QString name;
    /// Null where there was none, or once it is gone.
    QPointer<QObject> object;
    /// The object's class as it was when the notification was posted; empty without one.
    QByteArray objectClassName;
};

/// Carries notifications from whoever posts a name to everybody who observes it. Main thread only.
class NotificationCenter {
  public:
    using Handler = std::function<void(const Notification&)>;

    /// The one of the process.
    static NotificationCenter& defaultCenter();

    /// From now on `handler` hears of `name` from any sender, for as long as `observer` lives.
    void addObserver(QObject* observer, const QString& name, Handler handler);

    /// Calls the handlers at once, in the order in which they were added; one that is added meanwhile waits
    /// for the next notification. `object` may be null.
    void postNotification(const QString& name, QObject* object = nullptr);

  private:
    struct Observation {
        QPointer<QObject> observer;
        QString name;
        Handler handler;
    };
    std::vector<Observation> m_observations;
};

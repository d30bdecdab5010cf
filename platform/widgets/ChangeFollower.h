#pragma once

#include <QEvent>
#include <QObject>
#include <QWidget>

#include <functional>

/// Calls a function at once, and again whenever a widget tells of a change, such as of its font.
class ChangeFollower final : public QObject {
    Q_OBJECT

  public:
    /// `owner` owns the follower. `widget` and `owner` may be destroyed at any time.
    ChangeFollower(QWidget& widget, QEvent::Type change, QObject& owner, std::function<void()> follow);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QEvent::Type m_change;
    std::function<void()> m_follow;
};

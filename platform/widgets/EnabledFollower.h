#pragma once

#include <QObject>
#include <QWidget>

#include <functional>

/// Tells a function whether a control is enabled, at once and whenever that changes.
class EnabledFollower final : public QObject {
    Q_OBJECT

  public:
    /// `owner` owns the follower. `control` and `owner` may be destroyed at any time.
    EnabledFollower(QWidget& control, QObject& owner, std::function<void(bool isEnabled)> follow);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<void(bool isEnabled)> m_follow;
};

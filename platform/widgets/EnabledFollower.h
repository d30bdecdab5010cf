#pragma once

#include <QObject>
#include <QWidget>

#include <functional>

/// Tells whether a control is enabled, at once and whenever that changes.
class EnabledFollower final : public QObject {
    Q_OBJECT

  public:
    /// `owner` owns the follower; both may go at any time.
    EnabledFollower(QWidget& control, QObject& owner, std::function<void(bool isEnabled)> follow);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<void(bool isEnabled)> m_follow;
};

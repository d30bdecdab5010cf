#pragma once

#include <QFontMetrics>
#include <QObject>
#include <QWidget>

#include <functional>

/// Tells a function the metrics of a widget's font, at once and whenever the font changes. The widget owns
/// the follower.
class FontFollower final : public QObject {
    Q_OBJECT

  public:
    FontFollower(QWidget& widget, std::function<void(const QFontMetrics& metrics)> follow);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::function<void(const QFontMetrics& metrics)> m_follow;
};

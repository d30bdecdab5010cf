#pragma once

#include <QObject>
#include <QWidget>

/// Lets the user move a window by any part of it that no control answers for. The window owns it.
class BackgroundMover final : public QObject {
    Q_OBJECT

  public:
    explicit BackgroundMover(QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;
};

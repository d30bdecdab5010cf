#pragma once

#include <QObject>
#include <QWidget>

/// Lets the user move a window by dragging any part of it that no control uses. The window owns this object.
class BackgroundMover final : public QObject {
    Q_OBJECT

  public:
    explicit BackgroundMover(QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;
};

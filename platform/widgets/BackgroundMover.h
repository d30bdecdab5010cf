#pragma once

#include <QObject>
#include <QPoint>
#include <QWidget>

#include <optional>

/// Lets the user move a window by dragging any part of it that no control uses. A click there does nothing.
/// The window owns this object.
class BackgroundMover final : public QObject {
    Q_OBJECT

  public:
    explicit BackgroundMover(QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    /// Where the mouse was pressed, on the screen.
    std::optional<QPoint> m_pressed;
};

#pragma once

#include <QObject>
#include <QPointF>
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
    struct Press {
        QPointF inWindow;
        QPointF onScreen;
    };

    void drag(QWindow& window, QPointF mouse);

    std::optional<Press> m_pressed;
    /// The mouse has left the place of the press, and the window follows it.
    bool m_moves = false;
};

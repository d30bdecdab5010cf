#pragma once

#include <QWidget>

/// A light ground below a page control. The control's dots are made for one: on it the dot of the current
/// page stands out most. It is drawn on a dark desktop alone.
class PageGround final : public QWidget {
    Q_OBJECT

  public:
    /// Lies below `control`, in the same parent, and follows it. The control owns no part of it.
    explicit PageGround(QWidget& control);

    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void follow(const QWidget& control);
};

#pragma once

#include "base/Color.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QPointer>

/// Shows a colour; pressed, it opens the colour panel, alpha included, and follows what is chosen there.
class ColorWell : public QAbstractButton {
    Q_OBJECT
    Q_PROPERTY(QColor qcolor READ qcolor WRITE setQColor)

  public:
    explicit ColorWell(QWidget* parent = nullptr);

    const Color& color() const { return m_color; }
    /// No action is sent.
    void setColor(const Color& color);

    QColor qcolor() const;
    void setQColor(const QColor& color);

    /// The open panel, or null.
    QColorDialog* panel() const { return m_panel; }

    QSize sizeHint() const override;

  Q_SIGNALS:
    /// Whoever has set it.
    void colorChanged();
    /// The user has chosen another colour; sent for each one while the panel is open.
    void action();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void openPanel();
    void choose(const QColor& color);

    Color m_color;
    QPointer<QColorDialog> m_panel;
};

#pragma once

#include "base/Color.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QPointer>

/// Shows a colour. A press opens the colour panel. The well follows each choice in the panel.
class ColorWell : public QAbstractButton {
    Q_OBJECT
    Q_PROPERTY(QColor qcolor READ qcolor WRITE setQColor)
    Q_PROPERTY(bool opaque READ isOpaque WRITE setOpaque)

  public:
    explicit ColorWell(QWidget* parent = nullptr);

    const Color& color() const { return m_color; }
    /// Sends `colorChanged` and no `action`.
    void setColor(const Color& color);

    QColor qcolor() const;
    void setQColor(const QColor& color);

    /// Whether the panel offers opaque colours alone.
    bool isOpaque() const { return m_isOpaque; }
    void setOpaque(bool isOpaque) { m_isOpaque = isOpaque; }

    /// The colour panel while it is open, else null.
    QColorDialog* panel() const { return m_panel; }

    QSize sizeHint() const override;

  Q_SIGNALS:
    /// The user or the program has set the colour.
    void colorChanged();
    /// The user has chosen another colour. Sent for each choice while the panel is open.
    void action();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void openPanel();
    void choose(const QColor& color);

    Color m_color;
    bool m_isOpaque = false;
    QPointer<QColorDialog> m_panel;
};

#pragma once

#include <QStringList>
#include <QTreeWidget>

/// The built-in layouts, one line for each: a box to tick, its name, and what it is for.
class LayoutList final : public QTreeWidget {
    Q_OBJECT

  public:
    explicit LayoutList(QWidget* parent = nullptr);

    /// The names of the layouts that are ticked, in the list's order.
    QStringList ticked() const;
    /// Sends no signal.
    void setTicked(const QStringList& names);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    /// The user has ticked a layout, or has taken its tick away.
    void tickedChanged();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void fitColumns();
    static void toggle(QTreeWidgetItem* item);

    bool m_isFitting = false;
};

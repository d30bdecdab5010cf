#pragma once

#include <QPointer>
#include <QWidget>

/// A window without frame or title bar, whose content is cut along rounded corners: a floating card.
class ELGRoundWindow : public QWidget {
    Q_OBJECT

  public:
    static constexpr double cornerRadius = 20;

    /// Borderless whatever `styleMask` asks for.
    explicit ELGRoundWindow(const QRect& contentRect = {}, Qt::WindowFlags styleMask = {});

    QWidget* contentView() const { return m_contentView; }

    /// Rounds `view` and shows it in place of the earlier one, which is handed back to whoever has it: it
    /// keeps its rounding and has no parent any more.
    void setContentView(QWidget* view);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QPointer<QWidget> m_contentView;
};

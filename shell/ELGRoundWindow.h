#pragma once

#include <QPointer>
#include <QWidget>

/// A window without frame or title bar. Its content is cut along rounded corners. What lies outside of the
/// corners belongs to the windows behind, also on a desktop that has no translucent windows.
class ELGRoundWindow : public QWidget {
    Q_OBJECT

  public:
    static constexpr double cornerRadius = 20;

    /// The window is borderless; `styleMask` is ignored.
    explicit ELGRoundWindow(const QRect& contentRect = {}, Qt::WindowFlags styleMask = {});

    QWidget* contentView() const { return m_contentView; }

    /// Rounds `view`, takes ownership of it and shows it in place of the earlier view. The earlier view keeps
    /// its rounding, loses its parent and belongs to the caller again. `view` may be null.
    void setContentView(QWidget* view);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    QPointer<QWidget> m_contentView;
};

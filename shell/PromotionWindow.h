#pragma once

#include "platform/widgets/ImageView.h"
#include "shell/ELGRoundWindow.h"

#include <QCheckBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

class BFPageControl;

/// The window that suggests other applications of the same maker. Two of its buttons send signals; Back and
/// Escape hide the window.
class PromotionWindow final : public QObject {
    Q_OBJECT

  public:
    /// Loads the layout. The window is not shown yet.
    PromotionWindow();
    ~PromotionWindow() override;

    QWidget* window() const { return m_window.get(); }
    QWidget* contentView() const { return m_window->contentView(); }

    // Outlets.
    QPointer<ImageView> imgViewAppLogo;
    QPointer<QLabel> lblAppName;
    QPointer<QLabel> lblAppDesc;
    QPointer<QCheckBox> btnCheckDontShow;

    /// Where there is nothing to suggest, a sentence says so, and the open button and the logo are hidden.
    void setEmpty(bool isEmpty);

    /// Puts `control` into the order of Tab, after the open button. Without pages it is hidden.
    void placePageControl(BFPageControl& control);

    /// Shows the window in front of the others. If it was hidden, it appears over the middle of `other`,
    /// inside of that window's screen. `other` may be null.
    void show(const QWidget* other);

  Q_SIGNALS:
    /// The button that opens the suggestion was clicked.
    void openClicked(QPushButton* sender);
    /// The button that quits was clicked.
    void quitClicked(QPushButton* sender);

  private:
    std::unique_ptr<ELGRoundWindow> m_window;
    QPointer<QPushButton> m_open;
};

#pragma once

#include "platform/widgets/ImageView.h"
#include "shell/ELGRoundWindow.h"

#include <QCheckBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

class BFPageControl;

/// The window that suggests other applications of the same maker, from its layout. Two of its buttons send
/// signals; Back and Escape hide it.
class PromotionWindow final : public QObject {
    Q_OBJECT

  public:
    /// Loads the layout; the window is not shown.
    PromotionWindow();
    ~PromotionWindow() override;

    QWidget* window() const { return m_window.get(); }
    QWidget* contentView() const { return m_window->contentView(); }

    // Outlets.
    QPointer<ImageView> imgViewAppLogo;
    QPointer<QLabel> lblAppName;
    QPointer<QLabel> lblAppDesc;
    QPointer<QCheckBox> btnCheckDontShow;

    /// Without anything to suggest there is a sentence that says so, and no button.
    void setEmpty(bool isEmpty);

    /// Puts the control where Tab expects it.
    void placePageControl(BFPageControl& control);

    /// In front of the others, over the middle of `other`.
    void show(const QWidget* other);

  Q_SIGNALS:
    /// A click on the button that opens the suggestion, and on the one that quits.
    void openClicked(QPushButton* sender);
    void quitClicked(QPushButton* sender);

  private:
    std::unique_ptr<ELGRoundWindow> m_window;
    QPointer<QPushButton> m_open;
};

#include "shell/ELGRoundWindow.h"

#include "platform/widgets/RoundedClip.h"

ELGRoundWindow::ELGRoundWindow(const QRect& contentRect, Qt::WindowFlags /*styleMask*/)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint) {
    setAttribute(Qt::WA_TranslucentBackground);
    setGeometry(contentRect);
}

void ELGRoundWindow::setContentView(QWidget* view) {
    if (m_contentView == view)
        return;
    if (m_contentView != nullptr)
        m_contentView->setParent(nullptr);
    m_contentView = view;
    if (view == nullptr)
        return;
    view->setGraphicsEffect(new RoundedClip(cornerRadius));
    // The view paints its own background, because the window is transparent.
    view->setAutoFillBackground(true);
    view->setParent(this);
    view->setGeometry(rect());
    view->show();
}

void ELGRoundWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (m_contentView != nullptr)
        m_contentView->setGeometry(rect());
}

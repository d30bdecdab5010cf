#include "shell/ELGRoundWindow.h"

#include "platform/widgets/RoundedClip.h"

#include <QRegion>

#include <algorithm>
#include <cmath>

namespace {

/// All points of a rectangle of `size` that a rounded rectangle of the same size covers, wholly or in part.
QRegion roundedRegion(const QSize& size, double radius) {
    QRegion region;
    for (int y = 0; y < size.height(); ++y) {
        // How far the row's inner edge is from the middle of the corners.
        const double fromTop = radius - (y + 1);
        const double fromBottom = radius - (size.height() - y);
        const double away = std::max({0.0, fromTop, fromBottom});
        const int left = static_cast<int>(std::floor(radius - std::sqrt(radius * radius - away * away)));
        region += QRect(left, y, size.width() - 2 * left, 1);
    }
    return region;
}

} // namespace

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
    // Without a compositing manager a translucent window is black where nothing is drawn. The mask leaves
    // these parts out. It keeps all of the antialiased edge, and so changes nothing where there is a manager.
    setMask(roundedRegion(size(), cornerRadius));
    if (m_contentView != nullptr)
        m_contentView->setGeometry(rect());
}

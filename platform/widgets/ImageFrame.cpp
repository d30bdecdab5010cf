#include "platform/widgets/ImageFrame.h"

#include "platform/widgets/Contrast.h"
#include "platform/widgets/ImageView.h"
#include "platform/widgets/QtColor.h"

#include <QPainter>

namespace {

QPen framePen(const ImageView& view, const QPalette& colors) {
    const QColor accent = colors.color(QPalette::Highlight);
    if (view.isDropHighlighted())
        return {accent, 3};
    QPen pen(view.isPointedAt() ? accent : edgeColor(colors), 1.5);
    if (view.image().isNull())
        pen.setDashPattern({4, 3});
    return pen;
}

} // namespace

ImageFrame::ImageFrame(QWidget* parent) : QWidget(parent) {}

void ImageFrame::surround(ImageView& view) {
    m_view = &view;
    view.setFramed(false);
    connect(&view, &ImageView::looksChanged, this, qOverload<>(&QWidget::update));
}

void ImageFrame::paintEvent(QPaintEvent* /*event*/) {
    if (m_view == nullptr)
        return;
    const QPalette colors = palette();
    const QColor ground = colors.color(QPalette::Base);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(framePen(*m_view, colors));
    painter.setBrush(m_view->isDropHighlighted() ? mixed(colors.color(QPalette::Highlight), ground, 0.12)
                                                 : ground);
    constexpr double radius = 12;
    painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), radius, radius);
}

#include "platform/widgets/ImageView.h"

#include "imaging/drawing/GraphicsContext.h"
#include "platform/widgets/Contrast.h"
#include "platform/widgets/QtColor.h"

#include <QFocusEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

constexpr double frameRadius = 12;

/// An arrow into a tray, in a square of 48 × 48 points around the origin.
QPainterPath dropSymbol() {
    QPainterPath path;
    path.moveTo(0, -20);
    path.lineTo(0, 8);
    path.moveTo(-10, -2);
    path.lineTo(0, 8);
    path.lineTo(10, -2);
    path.moveTo(-22, 6);
    path.lineTo(-22, 14);
    path.quadTo(-22, 20, -16, 20);
    path.lineTo(16, 20);
    path.quadTo(22, 20, 22, 14);
    path.lineTo(22, 6);
    return path;
}

} // namespace

ImageView::ImageView(QWidget* parent) : QWidget(parent) {}

void ImageView::setImage(const Image& image) {
    m_image = image;
    m_shown = QImage();
    update();
}

void ImageView::setPlaceholderText(const QString& text) {
    m_placeholderText = text;
    update();
}

QSize ImageView::sizeHint() const {
    return {256, 256};
}

void ImageView::setDropHighlighted(bool highlighted) {
    m_isDropHighlighted = highlighted;
    update();
}

void ImageView::paintEvent(QPaintEvent* event) {
    const QRect dirty = event->rect();
    m_layer.draw(dirty, [&](QPainter& painter) {
        painter.save();
        drawRect(painter, dirty);
        painter.restore();
    });
    if ((m_showsFocus && hasFocus()) || (m_isDropHighlighted && !m_image.isNull())) {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 3));
        const double radius = m_image.isNull() ? frameRadius : std::max(4.0, m_layer.cornerRadius());
        painter.drawRoundedRect(QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5), radius, radius);
    }
}

void ImageView::focusInEvent(QFocusEvent* event) {
    // A click shows no focus ring: the user knows where it went. When the focus comes back with the window,
    // the ring is as it was before.
    const Qt::FocusReason reason = event->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason)
        m_showsFocus = true;
    update();
}

void ImageView::focusOutEvent(QFocusEvent* event) {
    const Qt::FocusReason reason = event->reason();
    if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
        reason != Qt::MenuBarFocusReason)
        m_showsFocus = false;
    update();
}

bool ImageView::focusNextPrevChild(bool next) {
    // Tab shows the ring, even where no other control can take the focus.
    m_showsFocus = true;
    update();
    return QWidget::focusNextPrevChild(next);
}

void ImageView::drawRect(QPainter& painter, const QRectF& /*rect*/) {
    if (!m_image.isNull())
        drawPicture(painter);
    else if (!m_placeholderText.isEmpty())
        drawPlaceholder(painter);
}

void ImageView::drawPicture(QPainter& painter) {
    const double scale = devicePixelRatioF();
    const QSizeF bounds = QSizeF(size()) * scale;
    const QSizeF fitted = m_image.size().scaled(bounds, Qt::KeepAspectRatio);
    const QSize pixels(std::max(1, qRound(fitted.width())), std::max(1, qRound(fitted.height())));
    if (m_shown.size() != pixels) {
        m_shown = drawnRaster(m_image, pixels).valueOr({});
    }
    m_shown.setDevicePixelRatio(scale);
    const QPointF corner(std::floor((bounds.width() - pixels.width()) / 2) / scale,
                         std::floor((bounds.height() - pixels.height()) / 2) / scale);
    painter.drawImage(corner, m_shown);
}

void ImageView::drawPlaceholder(QPainter& painter) const {
    const QPalette colors = palette();
    const QColor ground = colors.color(QPalette::Base);
    const QColor text = colors.color(QPalette::Text);
    const QColor accent = colors.color(QPalette::Highlight);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF frame = QRectF(rect()).adjusted(1, 1, -1, -1);
    QPen outline(m_isDropHighlighted ? accent : edgeColor(colors), m_isDropHighlighted ? 3 : 1.5);
    if (!m_isDropHighlighted)
        outline.setDashPattern({4, 3});
    painter.setPen(outline);
    painter.setBrush(m_isDropHighlighted ? mixed(accent, ground, 0.12) : ground);
    // The frame is at least as round as the layer, which may cut the corners.
    const double radius = std::max(frameRadius, m_layer.cornerRadius());
    painter.drawRoundedRect(frame, radius, radius);

    constexpr double symbolHeight = 48;
    constexpr double gap = 12;
    constexpr double margin = 16;
    const QRectF textArea = frame.adjusted(margin, 0, -margin, 0);
    const int flags = Qt::AlignHCenter | Qt::TextWordWrap;
    const double textHeight =
        painter.fontMetrics().boundingRect(textArea.toRect(), flags, m_placeholderText).height();
    const double top = frame.center().y() - (symbolHeight + gap + textHeight) / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(mixed(text, ground, 0.65), 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(dropSymbol().translated(frame.center().x(), top + symbolHeight / 2));
    painter.setPen(text);
    painter.drawText(QRectF(textArea.left(), top + symbolHeight + gap, textArea.width(), textHeight + 1),
                     flags, m_placeholderText);
}

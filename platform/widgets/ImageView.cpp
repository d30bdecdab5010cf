#include "platform/widgets/ImageView.h"

#include "imaging/drawing/GraphicsContext.h"
#include "platform/widgets/Contrast.h"
#include "platform/widgets/QtColor.h"
#include "platform/widgets/ScaledFont.h"

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
    Q_EMIT looksChanged();
}

void ImageView::setPlaceholderText(const QString& text) {
    m_placeholderText = text;
    update();
}

void ImageView::setPlaceholderDetail(const QString& text) {
    m_placeholderDetail = text;
    update();
}

void ImageView::setCheckered(bool isCheckered) {
    m_isCheckered = isCheckered;
    update();
}

void ImageView::setFramed(bool isFramed) {
    m_isFramed = isFramed;
    update();
}

QSize ImageView::sizeHint() const {
    return {256, 256};
}

void ImageView::setDropHighlighted(bool highlighted) {
    m_isDropHighlighted = highlighted;
    update();
    Q_EMIT looksChanged();
}

void ImageView::enterEvent(QEnterEvent* event) {
    setPointedAt(true);
    QWidget::enterEvent(event);
}

void ImageView::leaveEvent(QEvent* event) {
    setPointedAt(false);
    QWidget::leaveEvent(event);
}

void ImageView::setPointedAt(bool isPointedAt) {
    m_isPointedAt = isPointedAt;
    Q_EMIT looksChanged();
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
    if (m_isCheckered)
        drawCheckerboard(painter, QRectF(corner, QSizeF(pixels) / scale));
    painter.drawImage(corner, m_shown);
}

void ImageView::drawCheckerboard(QPainter& painter, const QRectF& rect) const {
    constexpr double square = 8;
    const QColor light = palette().color(QPalette::Base);
    const QColor dark = mixed(palette().color(QPalette::Text), light, 0.1);
    painter.fillRect(rect, light);
    for (int row = 0; row * square < rect.height(); ++row) {
        for (int column = row % 2; column * square < rect.width(); column += 2)
            painter.fillRect(QRectF(rect.left() + column * square, rect.top() + row * square, square, square)
                                 .intersected(rect),
                             dark);
    }
}

void ImageView::drawFrame(QPainter& painter) const {
    const QPalette colors = palette();
    const QColor ground = colors.color(QPalette::Base);
    const QColor accent = colors.color(QPalette::Highlight);
    QPen outline(m_isDropHighlighted ? accent : edgeColor(colors), m_isDropHighlighted ? 3 : 1.5);
    if (!m_isDropHighlighted)
        outline.setDashPattern({4, 3});
    painter.setPen(outline);
    painter.setBrush(m_isDropHighlighted ? mixed(accent, ground, 0.12) : ground);
    // The frame is at least as round as the layer, which may cut the corners.
    const double radius = std::max(frameRadius, m_layer.cornerRadius());
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
}

void ImageView::drawPlaceholder(QPainter& painter) const {
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_isFramed)
        drawFrame(painter);
    const QColor text = palette().color(QPalette::Text);
    constexpr double symbolHeight = 48;
    constexpr double gap = 12;
    constexpr double margin = 16;
    constexpr double detailScale = 0.9;
    const QRectF textArea = QRectF(rect()).adjusted(margin, 0, -margin, 0);
    const int flags = Qt::AlignHCenter | Qt::TextWordWrap;
    const QFont usual = painter.font();
    const QFont smaller = scaledFont(usual, detailScale);
    const auto heightOf = [&](const QString& words, const QFont& font) {
        return QFontMetrics(font, painter.device()).boundingRect(textArea.toRect(), flags, words).height();
    };
    const double textHeight = heightOf(m_placeholderText, usual);
    const double detailHeight =
        m_placeholderDetail.isEmpty() ? 0 : gap + heightOf(m_placeholderDetail, smaller);
    const double top = (height() - symbolHeight - gap - textHeight - detailHeight) / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(mixed(text, palette().color(QPalette::Base), 0.65), 3, Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    painter.drawPath(dropSymbol().translated(textArea.center().x(), top + symbolHeight / 2));
    painter.setPen(text);
    const double textTop = top + symbolHeight + gap;
    painter.drawText(QRectF(textArea.left(), textTop, textArea.width(), textHeight + 1), flags,
                     m_placeholderText);
    if (m_placeholderDetail.isEmpty())
        return;
    painter.setFont(smaller);
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(QRectF(textArea.left(), textTop + textHeight + gap, textArea.width(), detailHeight),
                     flags, m_placeholderDetail);
}

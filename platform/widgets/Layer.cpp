#include "platform/widgets/Layer.h"

#include "platform/widgets/QtColor.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace {

QPainterPath roundedRect(const QRectF& rect, double radius) {
    QPainterPath path;
    if (radius > 0)
        path.addRoundedRect(rect, radius, radius);
    else
        path.addRect(rect);
    return path;
}

} // namespace

void Layer::setCornerRadius(double radius) {
    m_cornerRadius = radius;
    m_view.update();
}

void Layer::setMasksToBounds(bool masks) {
    m_masksToBounds = masks;
    m_view.update();
}

void Layer::setBackgroundColor(const std::optional<Color>& color) {
    m_backgroundColor = color;
    m_view.update();
}

void Layer::setBorderColor(const std::optional<Color>& color) {
    m_borderColor = color;
    m_view.update();
}

void Layer::setBorderWidth(double width) {
    m_borderWidth = width;
    m_view.update();
}

void Layer::drawParts(QPainter& painter, const std::function<void(QPainter&)>& content) const {
    const QRectF bounds = m_view.rect();
    if (m_backgroundColor) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(roundedRect(bounds, m_cornerRadius), toQColor(*m_backgroundColor));
        painter.restore();
    }
    painter.save();
    content(painter);
    painter.restore();
    if (m_borderColor && m_borderWidth > 0) {
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setBrush(Qt::NoBrush);
        const double inset = m_borderWidth / 2;
        painter.setPen(
            QPen(toQColor(*m_borderColor), m_borderWidth, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
        painter.drawPath(roundedRect(bounds.adjusted(inset, inset, -inset, -inset),
                                     std::max(0.0, m_cornerRadius - inset)));
        painter.restore();
    }
}

void Layer::draw(const QRect& dirty, const std::function<void(QPainter&)>& content) const {
    QPainter onView(&m_view);
    if (!m_masksToBounds || m_cornerRadius <= 0) {
        drawParts(onView, content);
        return;
    }
    // A painter's own clip has no antialiasing. Therefore the view is drawn into an image, and the corners
    // are cut off that image. The image is as large as the view, so every part of it lies on the same pixels.
    const double scale = m_view.devicePixelRatioF();
    const QSize pixels(static_cast<int>(std::ceil(m_view.width() * scale)),
                       static_cast<int>(std::ceil(m_view.height() * scale)));
    QImage drawing(pixels, QImage::Format_ARGB32_Premultiplied);
    drawing.setDevicePixelRatio(scale);
    drawing.fill(0);
    QPainter painter(&drawing);
    painter.setClipRect(dirty);
    painter.setFont(m_view.font());
    painter.setPen(m_view.palette().color(m_view.foregroundRole()));
    painter.setLayoutDirection(m_view.layoutDirection());
    painter.save();
    drawParts(painter, content);
    painter.restore();
    QPainterPath corners;
    corners.addRect(m_view.rect());
    corners.addPath(roundedRect(m_view.rect(), m_cornerRadius));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(corners, Qt::black);
    painter.end();
    onView.drawImage(QPoint(0, 0), drawing);
}

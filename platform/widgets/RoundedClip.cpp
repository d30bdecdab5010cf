#include "platform/widgets/RoundedClip.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

void RoundedClip::draw(QPainter* painter) {
    QPoint offset;
    QPixmap content = sourcePixmap(Qt::LogicalCoordinates, &offset, QGraphicsEffect::NoPad);
    if (content.isNull())
        return;
    const QRectF bounds(QPointF(0, 0), content.deviceIndependentSize());
    QPainterPath corners;
    corners.addRect(bounds);
    corners.addRoundedRect(bounds, m_radius, m_radius);
    QPainter cutter(&content);
    cutter.setRenderHint(QPainter::Antialiasing);
    cutter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    cutter.fillPath(corners, Qt::black);
    cutter.end();
    painter->drawPixmap(offset, content);
}

#include "shell/BFPageControlCell.h"

#include <QPainter>
#include <QWidget>

void BFPageControlCell::drawWithFrame(QPainter& painter, const QRectF& frame, QWidget& inView) const {
    if (!_drawingBlock)
        return;
    painter.save();
    _drawingBlock(painter, inView, m_isOn, m_isHighlighted, frame);
    painter.restore();
}

void BFPageControlCell::resetCursorRect(QWidget& inView) const {
    if (_useHandCursor)
        inView.setCursor(Qt::PointingHandCursor);
    else
        inView.unsetCursor();
}

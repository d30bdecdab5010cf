#include "shell/PageIndicatorMatrix.h"

#include <algorithm>

PageIndicatorMatrix::PageIndicatorMatrix(const QRectF& frame, qint64 count, double diameter, double margin)
    : m_frame(frame),
      m_diameter(diameter),
      m_margin(margin),
      m_cells(static_cast<std::size_t>(std::max<qint64>(0, count))) {
    selectCell(0);
}

QRectF PageIndicatorMatrix::cellFrame(std::size_t index) const {
    return {m_frame.x() + static_cast<double>(index) * (m_diameter + m_margin), m_frame.y(), m_diameter,
            m_diameter};
}

qint64 PageIndicatorMatrix::cellAt(const QPointF& point) const {
    for (std::size_t i = 0; i < m_cells.size(); ++i) {
        if (cellFrame(i).contains(point))
            return static_cast<qint64>(i);
    }
    return -1;
}

void PageIndicatorMatrix::selectCell(qint64 index) {
    if (!has(index))
        return;
    m_selected = index;
    for (std::size_t i = 0; i < m_cells.size(); ++i)
        m_cells[i].setOn(static_cast<qint64>(i) == index);
}

void PageIndicatorMatrix::highlightCell(qint64 index) {
    for (std::size_t i = 0; i < m_cells.size(); ++i)
        m_cells[i].setHighlighted(static_cast<qint64>(i) == index);
}

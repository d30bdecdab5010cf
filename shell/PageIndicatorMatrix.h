#pragma once

#include "shell/BFPageControlCell.h"

#include <QPointF>

#include <vector>

/// A row of equal square indicators, one of which is selected: what a page control is made of until it is
/// rebuilt. Coordinates are the control's, y upward.
class PageIndicatorMatrix {
  public:
    /// `count` cells of `diameter` with `margin` between them, from the left in `frame`. The first one is
    /// selected.
    PageIndicatorMatrix(const QRectF& frame, qint64 count, double diameter, double margin);

    const QRectF& frame() const { return m_frame; }

    std::vector<BFPageControlCell>& cells() { return m_cells; }
    const std::vector<BFPageControlCell>& cells() const { return m_cells; }

    QRectF cellFrame(std::size_t index) const;

    /// The index of the cell at that place, or -1.
    qint64 cellAt(const QPointF& point) const;

    /// Stays as it was for an index without a cell. -1 in a row without cells.
    void selectCell(qint64 index);
    qint64 selectedCell() const { return m_selected; }

    /// -1 for none.
    void highlightCell(qint64 index);

  private:
    bool has(qint64 index) const { return index >= 0 && index < static_cast<qint64>(m_cells.size()); }

    QRectF m_frame;
    double m_diameter;
    double m_margin;
    std::vector<BFPageControlCell> m_cells;
    qint64 m_selected = -1;
};

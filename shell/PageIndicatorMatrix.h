#pragma once

#include "shell/BFPageControlCell.h"

#include <QPointF>

#include <vector>

/// A row of equal square indicators. One of them is selected. A page control makes a new row each time that
/// it is rebuilt. Coordinates are the control's, with y upward.
class PageIndicatorMatrix {
  public:
    /// `count` cells from the left of `frame`, each `diameter` wide, with `margin` between them, in points.
    /// The first cell is selected.
    PageIndicatorMatrix(const QRectF& frame, qint64 count, double diameter, double margin);

    const QRectF& frame() const { return m_frame; }

    std::vector<BFPageControlCell>& cells() { return m_cells; }
    const std::vector<BFPageControlCell>& cells() const { return m_cells; }

    QRectF cellFrame(std::size_t index) const;

    /// The index of the cell at `point`, or -1 where there is no cell.
    qint64 cellAt(const QPointF& point) const;

    /// Selects a cell. An index without a cell changes nothing.
    void selectCell(qint64 index);
    /// -1 in a row without cells.
    qint64 selectedCell() const { return m_selected; }

    /// Highlights one cell alone; -1 highlights no cell.
    void highlightCell(qint64 index);

  private:
    bool has(qint64 index) const { return index >= 0 && index < static_cast<qint64>(m_cells.size()); }

    QRectF m_frame;
    double m_diameter;
    double m_margin;
    std::vector<BFPageControlCell> m_cells;
    qint64 m_selected = -1;
};

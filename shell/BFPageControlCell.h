#pragma once

#include <QRectF>

#include <functional>

class QPainter;
class QWidget;

/// Draws one indicator of the control `view` into `painter`. `isCurrentPage` tells whether the indicator is
/// the current page's, `isHighlighted` whether it is being clicked. `frame` is in points, with y upward.
using PageIndicatorDrawing = std::function<void(QPainter& painter, QWidget& view, bool isCurrentPage,
                                                bool isHighlighted, const QRectF& frame)>;

/// One indicator of a page control.
class BFPageControlCell {
  public:
    /// Whether the pointer becomes a pointing hand over the cell.
    bool useHandCursor() const { return _useHandCursor; }
    void setUseHandCursor(bool useHandCursor) { _useHandCursor = useHandCursor; }

    const PageIndicatorDrawing& drawingBlock() const { return _drawingBlock; }
    void setDrawingBlock(const PageIndicatorDrawing& drawingBlock) { _drawingBlock = drawingBlock; }

    bool isOn() const { return m_isOn; }
    void setOn(bool isOn) { m_isOn = isOn; }

    bool isHighlighted() const { return m_isHighlighted; }
    void setHighlighted(bool isHighlighted) { m_isHighlighted = isHighlighted; }

    /// Calls the drawing block, if there is one. The painter's state is the same afterwards.
    void drawWithFrame(QPainter& painter, const QRectF& frame, QWidget& inView) const;

    /// Gives `inView` the pointer for this cell.
    void resetCursorRect(QWidget& inView) const;

  private:
    bool _useHandCursor = false;
    PageIndicatorDrawing _drawingBlock;
    bool m_isOn = false;
    bool m_isHighlighted = false;
};

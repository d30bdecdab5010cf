#pragma once

#include <QRectF>

#include <functional>

class QPainter;
class QWidget;

/// Draws one indicator: into `painter`, for the control `view`, whether it is the current page's, whether it
/// is being clicked, and its frame.
using PageIndicatorDrawing = std::function<void(QPainter& painter, QWidget& view, bool isCurrentPage,
                                                bool isHighlighted, const QRectF& frame)>;

/// One indicator of a page control.
class BFPageControlCell {
  public:
    /// Whether the pointer is a pointing hand over the cell.
    bool useHandCursor() const { return _useHandCursor; }
    void setUseHandCursor(bool useHandCursor) { _useHandCursor = useHandCursor; }

    const PageIndicatorDrawing& drawingBlock() const { return _drawingBlock; }
    void setDrawingBlock(const PageIndicatorDrawing& drawingBlock) { _drawingBlock = drawingBlock; }

    bool isOn() const { return m_isOn; }
    void setOn(bool isOn) { m_isOn = isOn; }

    bool isHighlighted() const { return m_isHighlighted; }
    void setHighlighted(bool isHighlighted) { m_isHighlighted = isHighlighted; }

    /// Nothing at all without a drawing block. The painter's state is kept.
    void drawWithFrame(QPainter& painter, const QRectF& frame, QWidget& inView) const;

    /// Gives `inView` the pointer that belongs over this cell.
    void resetCursorRect(QWidget& inView) const;

  private:
    bool _useHandCursor = false;
    PageIndicatorDrawing _drawingBlock;
    bool m_isOn = false;
    bool m_isHighlighted = false;
};

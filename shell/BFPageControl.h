#pragma once

#include "base/Color.h"
#include "platform/widgets/Accessibility.h"
#include "shell/PageIndicatorMatrix.h"

#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

class BFPageControl;

/// Is told which page the user picks. A delegate may leave the method out.
class BFPageControlDelegate {
  public:
    virtual ~BFPageControlDelegate() = default;
    virtual void pageControl(BFPageControl* /*control*/, qint64 /*didSelectPageAtIndex*/) {}
};

/// A row of round indicators, one for each page. The current page's indicator is marked. A click or an arrow
/// key picks a page. A drawing block decides how an indicator looks.
///
/// Most setters rebuild the row at once. Lengths and positions are in points and may be fractions. Positions
/// have y upward, also in the frames that the drawing block gets.
class BFPageControl final : public QWidget, public AccessibleValue {
    Q_OBJECT

  public:
    /// Starts without pages, with a diameter of 10 and a margin of 5.
    explicit BFPageControl(const QRectF& frame = {}, QWidget* parent = nullptr);

    // These setters rebuild the row.
    qint64 currentPage() const { return _currentPage; }
    /// An index without a page leaves the first indicator marked.
    void setCurrentPage(qint64 currentPage);
    qint64 numberOfPages() const { return _numberOfPages; }
    void setNumberOfPages(qint64 numberOfPages);
    /// The three colours are dark grey, grey and light grey unless they are set.
    const Color& selectedColor() const;
    void setSelectedColor(const Color& color);
    const Color& highlightColor() const;
    void setHighlightColor(const Color& color);
    const Color& unselectedColor() const;
    void setUnselectedColor(const Color& color);
    bool useHandCursor() const { return _useHandCursor; }
    void setUseHandCursor(bool useHandCursor);
    /// Without a drawing block, an indicator is an oval in one of the three colours.
    void setDrawingBlock(const PageIndicatorDrawing& drawingBlock);

    // These setters only keep the value. It takes effect when the row is rebuilt for another reason.
    bool hidesForSinglePage() const { return _hidesForSinglePage; }
    void setHidesForSinglePage(bool hides) { _hidesForSinglePage = hides; }
    double indicatorDiameterSize() const { return _indicatorDiameterSize; }
    void setIndicatorDiameterSize(double size) { _indicatorDiameterSize = size; }
    double indicatorMargin() const { return _indicatorMargin; }
    void setIndicatorMargin(double margin) { _indicatorMargin = margin; }
    BFPageControlDelegate* delegate() const { return _delegate; }
    /// Not owned.
    void setDelegate(BFPageControlDelegate* delegate) { _delegate = delegate; }

    /// Where the control lies in its parent, with y upward. Fractions of a point are not rounded when it is
    /// painted.
    const QRectF& frame() const { return m_frame; }
    void setFrame(const QRectF& frame);
    /// The part of the control's own coordinates that its frame shows. Unless it is set, it starts at 0, 0
    /// and has the frame's size.
    QRectF bounds() const;
    void setBounds(const QRectF& bounds);

    /// Not limited to 0: without pages the width is negative.
    QSizeF sizeForNumberOfPages(qint64 pages) const;
    QSizeF intrinsicContentSize() const { return sizeForNumberOfPages(_numberOfPages); }
    QSizeF fittingSize() const { return intrinsicContentSize(); }
    QSize sizeHint() const override;

    /// Rebuilds the row.
    void updateCurrentPageDisplay();

    /// The current row; null while no row is shown.
    const PageIndicatorMatrix* matrix() const { return _matrix.get(); }

    /// The row's action. The page of its selected indicator becomes the current page, and the delegate is
    /// told.
    void _clickedItem(PageIndicatorMatrix* sender);

    /// Does what a click on the indicator `index` does. Does nothing for an index without an indicator.
    void clickIndicator(qint64 index);

    // People count pages from 1.
    QString accessibleValueText() const override;
    QVariant accessibleValue() const override { return shownPage(); }
    void setAccessibleValue(const QVariant& value) override { clickIndicator(value.toLongLong() - 1); }
    QVariant accessibleMinimum() const override { return hasIndicators() ? 1 : 0; }
    QVariant accessibleMaximum() const override { return hasIndicators() ? _numberOfPages : 0; }
    QVariant accessibleStep() const override { return 1; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    PageIndicatorDrawing builtInDrawingBlock();
    QTransform boundsToWidget() const;
    qint64 cellUnder(const QPointF& position) const;
    void placeWidget();
    QRect alignedGeometry() const;
    double parentHeight() const;
    bool hasIndicators() const { return _matrix != nullptr && !_matrix->cells().empty(); }
    qint64 shownPage() const { return hasIndicators() ? _matrix->selectedCell() + 1 : 0; }
    void followWidget();
    void tellValue();

    PageIndicatorDrawing _drawingBlock;
    std::shared_ptr<PageIndicatorMatrix> _matrix;
    bool _hidesForSinglePage = false;
    bool _useHandCursor = false;
    qint64 _currentPage = 0;
    qint64 _numberOfPages = 0;
    mutable std::optional<Color> _selectedColor;
    mutable std::optional<Color> _highlightColor;
    mutable std::optional<Color> _unselectedColor;
    double _indicatorDiameterSize = 10;
    double _indicatorMargin = 5;
    BFPageControlDelegate* _delegate = nullptr;

    QRectF m_frame;
    std::optional<QRectF> m_bounds; ///< without a value: the frame's size at 0, 0
    QPointer<QWidget> m_placedIn;   ///< the parent; its resizes move the control
    bool m_showsFocus = false;
    bool m_isPressed = false;
};

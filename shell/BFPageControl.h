#pragma once

#include "base/Color.h"
#include "platform/widgets/Accessibility.h"
#include "shell/PageIndicatorMatrix.h"

#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

class BFPageControl;

/// Hears of the page that the user picks; its one method may be left out.
class BFPageControlDelegate {
  public:
    virtual ~BFPageControlDelegate() = default;
    virtual void pageControl(BFPageControl* /*control*/, qint64 /*didSelectPageAtIndex*/) {}
};

/// A row of round indicators, one for each page, of which the current page's is marked. A click, or an arrow
/// key, picks a page. How an indicator looks is a drawing block's to say.
///
/// Most setters rebuild the row at once. Lengths are in points; places have y upward, as the drawing block's
/// frames have, and need not be whole.
class BFPageControl final : public QWidget, public AccessibleValue {
    Q_OBJECT

  public:
    /// Without pages, of diameter 10 and margin 5.
    explicit BFPageControl(const QRectF& frame = {}, QWidget* parent = nullptr);

    // These rebuild the row.
    qint64 currentPage() const { return _currentPage; }
    /// An index without a page leaves the first indicator marked.
    void setCurrentPage(qint64 currentPage);
    qint64 numberOfPages() const { return _numberOfPages; }
    void setNumberOfPages(qint64 numberOfPages);
    /// Dark grey, grey and light grey, unless set.
    const Color& selectedColor() const;
    void setSelectedColor(const Color& color);
    const Color& highlightColor() const;
    void setHighlightColor(const Color& color);
    const Color& unselectedColor() const;
    void setUnselectedColor(const Color& color);
    bool useHandCursor() const { return _useHandCursor; }
    void setUseHandCursor(bool useHandCursor);
    /// Without one, an indicator is an oval in one of the three colours.
    void setDrawingBlock(const PageIndicatorDrawing& drawingBlock);

    // These are only kept, until the row is rebuilt for another reason.
    bool hidesForSinglePage() const { return _hidesForSinglePage; }
    void setHidesForSinglePage(bool hides) { _hidesForSinglePage = hides; }
    double indicatorDiameterSize() const { return _indicatorDiameterSize; }
    void setIndicatorDiameterSize(double size) { _indicatorDiameterSize = size; }
    double indicatorMargin() const { return _indicatorMargin; }
    void setIndicatorMargin(double margin) { _indicatorMargin = margin; }
    BFPageControlDelegate* delegate() const { return _delegate; }
    /// Not owned.
    void setDelegate(BFPageControlDelegate* delegate) { _delegate = delegate; }

    /// Where the control lies in its parent, y upward; a fraction of a point is painted as such.
    const QRectF& frame() const { return m_frame; }
    void setFrame(const QRectF& frame);
    /// The control's own coordinates, which its frame shows.
    QRectF bounds() const;
    void setBounds(const QRectF& bounds);

    /// Not limited: without pages the width is less than 0.
    QSizeF sizeForNumberOfPages(qint64 pages) const;
    QSizeF intrinsicContentSize() const { return sizeForNumberOfPages(_numberOfPages); }
    QSizeF fittingSize() const { return intrinsicContentSize(); }
    QSize sizeHint() const override;

    /// Makes the row anew.
    void updateCurrentPageDisplay();

    /// The row as it is now; null where there is none.
    const PageIndicatorMatrix* matrix() const { return _matrix.get(); }

    /// The row's action: the page of its selected indicator becomes the current one, and the delegate hears
    /// of it.
    void _clickedItem(PageIndicatorMatrix* sender);

    /// What a click on that indicator does.
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
    std::optional<QRectF> m_bounds; ///< none: the frame's size at the origin
    QPointer<QWidget> m_placedIn;   ///< whose height tells where the bottom is
    bool m_showsFocus = false;
    bool m_isPressed = false;
};

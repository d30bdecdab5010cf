#include "shell/BFPageControl.h"

#include "platform/widgets/QtColor.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <cmath>

namespace {

constexpr Color darkGray{1.0 / 3, 1.0 / 3, 1.0 / 3, 1};
constexpr Color gray{0.5, 0.5, 0.5, 1};
constexpr Color lightGray{2.0 / 3, 2.0 / 3, 2.0 / 3, 1};

const Color& madeOnFirstRead(std::optional<Color>& color, const Color& initial) {
    if (!color)
        color = initial;
    return *color;
}

/// Half of the space that is left over, narrowed to single precision and then rounded down.
double centred(double available, double used) {
    return static_cast<double>(std::floor(static_cast<float>((available - used) * 0.5)));
}

} // namespace

BFPageControl::BFPageControl(const QRectF& frame, QWidget* parent) : QWidget(parent), m_frame(frame) {
    // Assistive technology may ask for the control as soon as it exists.
    installAccessibility();
    setMouseTracking(true);
    setAccessibleName(tr("Page"));
    placeWidget();
}

void BFPageControl::setCurrentPage(qint64 currentPage) {
    _currentPage = currentPage;
    updateCurrentPageDisplay();
}

void BFPageControl::setNumberOfPages(qint64 numberOfPages) {
    _numberOfPages = numberOfPages;
    updateGeometry();
    updateCurrentPageDisplay();
}

const Color& BFPageControl::selectedColor() const {
    return madeOnFirstRead(_selectedColor, darkGray);
}

void BFPageControl::setSelectedColor(const Color& color) {
    _selectedColor = color;
    updateCurrentPageDisplay();
}

const Color& BFPageControl::highlightColor() const {
    return madeOnFirstRead(_highlightColor, gray);
}

void BFPageControl::setHighlightColor(const Color& color) {
    _highlightColor = color;
    updateCurrentPageDisplay();
}

const Color& BFPageControl::unselectedColor() const {
    return madeOnFirstRead(_unselectedColor, lightGray);
}

void BFPageControl::setUnselectedColor(const Color& color) {
    _unselectedColor = color;
    updateCurrentPageDisplay();
}

void BFPageControl::setUseHandCursor(bool useHandCursor) {
    _useHandCursor = useHandCursor;
    updateCurrentPageDisplay();
}

void BFPageControl::setDrawingBlock(const PageIndicatorDrawing& drawingBlock) {
    _drawingBlock = drawingBlock;
    updateCurrentPageDisplay();
}

void BFPageControl::setFrame(const QRectF& frame) {
    m_frame = frame;
    placeWidget();
    updateCurrentPageDisplay();
}

QRectF BFPageControl::bounds() const {
    return m_bounds.value_or(QRectF(QPointF(0, 0), m_frame.size()));
}

void BFPageControl::setBounds(const QRectF& bounds) {
    m_bounds = bounds;
    updateCurrentPageDisplay();
}

double BFPageControl::parentHeight() const {
    return parentWidget() != nullptr ? parentWidget()->height() : 0;
}

/// Every pixel that the frame touches, with y downward as in any widget.
QRect BFPageControl::alignedGeometry() const {
    return QRectF(m_frame.x(), parentHeight() - m_frame.y() - m_frame.height(), m_frame.width(),
                  m_frame.height())
        .toAlignedRect();
}

void BFPageControl::placeWidget() {
    setGeometry(alignedGeometry());
}

/// Sets the frame to the widget's place, where something else has placed the widget, for instance a layout.
void BFPageControl::followWidget() {
    if (geometry() == alignedGeometry())
        return;
    m_frame = QRectF(x(), parentHeight() - y() - height(), width(), height());
    updateCurrentPageDisplay();
}

void BFPageControl::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    followWidget();
}

void BFPageControl::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    followWidget();
}

QTransform BFPageControl::boundsToWidget() const {
    const QRectF from = bounds();
    const double xScale = from.width() != 0 ? m_frame.width() / from.width() : 1;
    const double yScale = from.height() != 0 ? m_frame.height() / from.height() : 1;
    const double left = m_frame.x() - x();
    const double bottom = parentHeight() - m_frame.y() - y();
    return QTransform::fromTranslate(-from.x(), -from.y()) * QTransform::fromScale(xScale, -yScale) *
           QTransform::fromTranslate(left, bottom);
}

QSizeF BFPageControl::sizeForNumberOfPages(qint64 pages) const {
    const auto count = static_cast<double>(pages);
    return {count * _indicatorDiameterSize + (count - 1) * _indicatorMargin, _indicatorDiameterSize};
}

QSize BFPageControl::sizeHint() const {
    const QSizeF size = intrinsicContentSize();
    return {std::max(0, static_cast<int>(std::ceil(size.width()))),
            static_cast<int>(std::ceil(size.height()))};
}

PageIndicatorDrawing BFPageControl::builtInDrawingBlock() {
    return [control = QPointer<BFPageControl>(this)](QPainter& painter, QWidget& /*view*/, bool isCurrentPage,
                                                     bool isHighlighted, const QRectF& frame) {
        if (control == nullptr)
            return;
        const Color& color = isHighlighted   ? control->highlightColor()
                             : isCurrentPage ? control->selectedColor()
                                             : control->unselectedColor();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(toQColor(color));
        painter.drawEllipse(frame);
    };
}

void BFPageControl::updateCurrentPageDisplay() {
    _matrix.reset();
    m_isPressed = false;
    update();
    setFocusPolicy(Qt::NoFocus);
    if (_hidesForSinglePage && _numberOfPages < 2)
        return;
    const QSizeF size = sizeForNumberOfPages(_numberOfPages);
    const QPointF origin(centred(bounds().width(), size.width()), centred(bounds().height(), size.height()));
    _matrix = std::make_shared<PageIndicatorMatrix>(QRectF(origin, size), _numberOfPages,
                                                    _indicatorDiameterSize, _indicatorMargin);
    for (BFPageControlCell& cell : _matrix->cells()) {
        cell.setDrawingBlock(_drawingBlock ? _drawingBlock : builtInDrawingBlock());
        cell.setUseHandCursor(_useHandCursor);
    }
    _matrix->selectCell(_currentPage);
    setFocusPolicy(hasIndicators() ? Qt::StrongFocus : Qt::NoFocus);
    tellValue();
}

void BFPageControl::_clickedItem(PageIndicatorMatrix* sender) {
    _currentPage = sender->selectedCell();
    tellValue();
    if (_delegate != nullptr)
        _delegate->pageControl(this, _currentPage);
}

void BFPageControl::clickIndicator(qint64 index) {
    if (_matrix == nullptr || index < 0 || index >= static_cast<qint64>(_matrix->cells().size()))
        return;
    _matrix->selectCell(index);
    update();
    _clickedItem(_matrix.get());
}

QString BFPageControl::accessibleValueText() const {
    return hasIndicators() ? tr("%1 of %2").arg(shownPage()).arg(_numberOfPages) : QString();
}

void BFPageControl::tellValue() {
    QAccessibleValueChangeEvent event(this, accessibleValue());
    QAccessible::updateAccessibility(&event);
}

void BFPageControl::paintEvent(QPaintEvent* /*event*/) {
    // Keeps the row alive while it is drawn. A drawing block may call a setter that replaces the row.
    const std::shared_ptr<PageIndicatorMatrix> row = _matrix;
    if (row == nullptr)
        return;
    QPainter painter(this);
    painter.setTransform(boundsToWidget(), true);
    for (std::size_t i = 0; i < row->cells().size(); ++i)
        row->cells()[i].drawWithFrame(painter, row->cellFrame(i), *this);
    if (!hasFocus() || !m_showsFocus || row->selectedCell() < 0)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(row->cellFrame(static_cast<std::size_t>(row->selectedCell())).adjusted(1, 1, -1, -1));
}

qint64 BFPageControl::cellUnder(const QPointF& position) const {
    return _matrix != nullptr ? _matrix->cellAt(boundsToWidget().inverted().map(position)) : -1;
}

void BFPageControl::mousePressEvent(QMouseEvent* event) {
    const qint64 cell = cellUnder(event->position());
    if (event->button() != Qt::LeftButton || cell < 0) {
        event->ignore();
        return;
    }
    m_isPressed = true;
    _matrix->highlightCell(cell);
    update();
}

void BFPageControl::mouseMoveEvent(QMouseEvent* event) {
    const qint64 cell = cellUnder(event->position());
    if (m_isPressed && _matrix != nullptr) {
        _matrix->highlightCell(cell);
        update();
    }
    if (cell >= 0)
        _matrix->cells()[static_cast<std::size_t>(cell)].resetCursorRect(*this);
    else
        unsetCursor();
}

void BFPageControl::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_isPressed)
        return;
    m_isPressed = false;
    const qint64 cell = cellUnder(event->position());
    if (_matrix != nullptr)
        _matrix->highlightCell(-1);
    update();
    clickIndicator(cell);
}

void BFPageControl::keyPressEvent(QKeyEvent* event) {
    const int step = event->key() == Qt::Key_Right || event->key() == Qt::Key_Down ? 1
                     : event->key() == Qt::Key_Left || event->key() == Qt::Key_Up  ? -1
                                                                                   : 0;
    if (step == 0 || _matrix == nullptr)
        QWidget::keyPressEvent(event);
    else {
        m_showsFocus = true;
        clickIndicator(_matrix->selectedCell() + step);
    }
}

void BFPageControl::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    // A click shows no focus ring.
    const Qt::FocusReason reason = event->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason)
        m_showsFocus = true;
    else if (reason == Qt::MouseFocusReason)
        m_showsFocus = false;
    update();
}

void BFPageControl::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

bool BFPageControl::event(QEvent* event) {
    if (event->type() == QEvent::ParentChange) {
        if (m_placedIn != nullptr)
            m_placedIn->removeEventFilter(this);
        m_placedIn = parentWidget();
        if (m_placedIn != nullptr)
            m_placedIn->installEventFilter(this);
        placeWidget();
    }
    return QWidget::event(event);
}

bool BFPageControl::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_placedIn && event->type() == QEvent::Resize)
        placeWidget();
    return QWidget::eventFilter(watched, event);
}

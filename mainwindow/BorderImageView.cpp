#include "mainwindow/BorderImageView.h"

#include "files/PathBytes.h"
#include "imaging/io/PictureFormat.h"
#include "mainwindow/MimeContents.h"
#include "platform/services/NotificationCenter.h"
#include "platform/widgets/QtColor.h"
#include "platform/widgets/WaitCursor.h"

#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QWindow>

#include <optional>

const QString BorderImageView::imageAdded = QStringLiteral("imageAdded");

namespace {

/// Answers with a copy, or with no action to a source that offers no copy. After a move the source would
/// delete the dragged files.
void answerCopy(QDropEvent& event) {
    event.setDropAction(Qt::CopyAction);
    if (event.dropAction() != Qt::CopyAction)
        event.setDropAction(Qt::IgnoreAction);
    event.accept();
}

/// The names of the formats as a list in the user's language.
QString formatNames() {
    const QString names = PictureFormats::names();
    const QString last = QStringLiteral(" or ");
    //: The end of a list of formats.
    return BorderImageView::tr("%1 or %2").arg(names.section(last, 0, 0), names.section(last, 1));
}

} // namespace

BorderImageView::BorderImageView(QWidget* parent) : ImageView(parent) {
    installAccessibility();
    describe();
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setCheckered(true);
    setPlaceholderDetail(tr("%1.\nBest: square, 1024 × 1024 or larger.").arg(formatNames()));
}

void BorderImageView::setRoundCorner(bool roundCorner) {
    _roundCorner = roundCorner;
    update();
}

void BorderImageView::setCornerRadiusPercent(float cornerRadiusPercent) {
    _cornerRadiusPercent = cornerRadiusPercent;
    update();
}

void BorderImageView::setBorder(bool border) {
    _border = border;
    update();
}

void BorderImageView::setBorderWidth(float borderWidth) {
    _borderWidth = borderWidth;
    update();
}

void BorderImageView::setBorderColor(const std::optional<Color>& borderColor) {
    _borderColor = borderColor;
    update();
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): a method of the view that is dragged over
DragOperation BorderImageView::draggingEntered(const QMimeData* /*sender*/) {
    return DragOperation::Copy;
}

DragOperation BorderImageView::draggingUpdated(const QMimeData* sender) {
    return draggingEntered(sender);
}

bool BorderImageView::performDragOperation(const QMimeData* sender) {
    if (sender == nullptr || !sender->hasUrls())
        return true;
    const QStringList paths = MimeContents::fileNames(*sender);
    if (!paths.isEmpty())
        takeFile(paths.last());
    return true;
}

void BorderImageView::takeFile(const QString& path) {
    m_pastedBytes.clear();
    read(path, [&](const LoadOptions& options) {
        return ImageSource::loadFile(PathBytes::encoded(path).toStdString(), options);
    });
}

void BorderImageView::takePicture(const QByteArray& bytes) {
    m_pastedBytes = bytes;
    read({}, [&](const LoadOptions& options) { return ImageSource::load(bytes, options); });
}

/// Shows what `load` gives. No event is delivered in the meantime.
void BorderImageView::read(const QString& path,
                           const std::function<Result<LoadedPicture>(const LoadOptions&)>& load) {
    const WaitCursor cursor;
    const LongWork work(m_patience, [&] { Q_EMIT readingTakesLong(path); });
    showArrived(path, load({m_renders ? m_renders() : ReducedCopies::Renders(), svgTimeInWindow}));
    // Drawing an SVG picture takes time too.
    if (isVisible())
        repaint();
}

void BorderImageView::showArrived(const QString& path, const Result<LoadedPicture>& picture) {
    setImage(picture ? picture->image : Image());
    describe();
    NotificationCenter::defaultCenter().postNotification(imageAdded);
    if (picture)
        Q_EMIT pictureArrived(path, *picture);
    else
        Q_EMIT pictureRefused(path, picture.error().sentence);
}

void BorderImageView::describe() {
    const QSizeF size = image().size();
    setAccessibleDescription(image().isNull()
                                 ? tr("Empty. Drop a picture here, or press Space to choose one.")
                                 : tr("A picture of %1 × %2").arg(size.width()).arg(size.height()));
}

Path BorderImageView::outline(const QRectF& rect) const {
    const double radius = _cornerRadiusPercent;
    Path path = _roundCorner
                    ? Path::bezierPathWithRoundedRect(rect, rect.width() * radius, rect.height() * radius)
                    : Path::bezierPathWithRect(rect);
    path.setLineWidth(rect.width() * static_cast<double>(_borderWidth));
    return path;
}

void BorderImageView::drawRect(QPainter& painter, const QRectF& rect) {
    ImageView::drawRect(painter, rect);
    // The state is restored before the border and saved again after it. The state that the picture was drawn
    // with does not touch the border.
    painter.restore();
    if (_border) {
        const Path path = outline(rect);
        QPen pen = painter.pen();
        if (_borderColor)
            pen.setColor(toQColor(*_borderColor));
        pen.setWidthF(path.lineWidth());
        pen.setJoinStyle(Qt::MiterJoin);
        painter.setPen(pen);
        painter.setRenderHint(QPainter::Antialiasing);
        // A pen of width 0 would draw a hairline.
        if (path.lineWidth() > 0)
            painter.strokePath(path.painterPath(), pen);
    }
    painter.save();
}

void BorderImageView::dragEnterEvent(QDragEnterEvent* event) {
    if (draggingEntered(event->mimeData()) != DragOperation::Copy)
        return;
    answerCopy(*event);
    const QMimeData* dragged = event->mimeData();
    m_carriesFile = dragged != nullptr && !MimeContents::fileNames(*dragged).isEmpty();
    followDrag(*event);
}

void BorderImageView::dragMoveEvent(QDragMoveEvent* event) {
    if (draggingUpdated(event->mimeData()) != DragOperation::Copy)
        return;
    answerCopy(*event);
    followDrag(*event);
}

/// Shows whether the drag would bring a file. The user may change what it offers on the way, with a key.
void BorderImageView::followDrag(const QDropEvent& event) {
    const bool bringsFile = m_carriesFile && event.possibleActions().testFlag(Qt::CopyAction);
    setDropHighlighted(bringsFile);
    // The window tells when the mouse is free again.
    if (QWindow* handle = window()->windowHandle(); handle != nullptr && bringsFile)
        handle->installEventFilter(this);
}

void BorderImageView::endDrag() {
    setDropHighlighted(false);
    if (QWindow* handle = window()->windowHandle())
        handle->removeEventFilter(this);
}

bool BorderImageView::eventFilter(QObject* watched, QEvent* event) {
    // A drag whose source dies does not leave. While a drag goes on, its source has the mouse; when the
    // source dies, the mouse comes to the window below it.
    const QEvent::Type type = event->type();
    if (watched->isWindowType() && (type == QEvent::Enter || type == QEvent::MouseMove))
        endDrag();
    return ImageView::eventFilter(watched, event);
}

void BorderImageView::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
    endDrag();
}

void BorderImageView::dropEvent(QDropEvent* event) {
    endDrag();
    event->setAccepted(performDragOperation(event->mimeData()));
    answerCopy(*event);
}

void BorderImageView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        Q_EMIT pressed();
}

void BorderImageView::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    const bool isPress = key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter;
    if (isPress && !event->isAutoRepeat())
        Q_EMIT pressed();
    else if (!isPress)
        ImageView::keyPressEvent(event);
}

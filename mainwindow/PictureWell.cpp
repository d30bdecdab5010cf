#include "mainwindow/PictureWell.h"

#include "files/PathBytes.h"
#include "mainwindow/MimeContents.h"
#include "mainwindow/PictureFiles.h"
#include "platform/widgets/QtColor.h"
#include "platform/widgets/WaitCursor.h"

#include <QDragEnterEvent>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>

#include <algorithm>

namespace {

/// The file that a drag brings; the last of several.
QString fileOf(const QDropEvent& event) {
    const QStringList paths =
        event.mimeData() != nullptr ? MimeContents::fileNames(*event.mimeData()) : QStringList();
    return paths.isEmpty() || !event.possibleActions().testFlag(Qt::CopyAction) ? QString() : paths.last();
}

} // namespace

PictureWell::PictureWell(QWidget* parent) : ImageView(parent) {
    installAccessibility();
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setCheckered(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    describe();
}

void PictureWell::setPicture(const ShownPicture& picture) {
    m_picture = picture;
    setImage(picture.image());
    describe();
}

void PictureWell::describe() {
    const QSizeF size = image().size();
    const QString name = PathBytes::withReplacements(m_picture.path().section(u'/', -1));
    setAccessibleDescription(
        m_picture.isNull()
            ? tr("Empty. Drop a picture here, or press Space to choose one.")
            : tr("%1, %2 × %3. Delete removes it.").arg(name).arg(size.width()).arg(size.height()));
}

void PictureWell::takeFile(const QString& path) {
    const WaitCursor cursor;
    const Result<LoadedPicture> loaded =
        ImageSource::loadFile(PathBytes::encoded(path).toStdString(), {{}, svgTimeInWindow});
    if (!loaded) {
        Q_EMIT pictureRefused(path, loaded.error().sentence);
        return;
    }
    setPicture({path, {}, *loaded});
    Q_EMIT pictureChanged();
}

void PictureWell::removePicture() {
    if (m_picture.isNull())
        return;
    setPicture({});
    Q_EMIT pictureChanged();
}

void PictureWell::choose() {
    auto* panel = new QFileDialog(window());
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setFileMode(QFileDialog::ExistingFile);
    panel->setNameFilters(pictureFilters());
    connect(panel, &QFileDialog::accepted, this,
            [this, panel] { takeFile(panel->selectedUrls().value(0).toLocalFile()); });
    panel->open();
}

void PictureWell::accessiblePress() {
    if (m_picture.isNull()) {
        choose();
        return;
    }
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("&Choose Another…"), this, &PictureWell::choose);
    menu->addAction(tr("&Remove"), this, &PictureWell::removePicture);
    menu->popup(mapToGlobal(QPoint(0, height())));
}

QSize PictureWell::sizeHint() const {
    constexpr int least = 52;
    constexpr double lines = 3.2;
    const int side = std::max(least, static_cast<int>(lines * fontMetrics().height()));
    return {side, side};
}

void PictureWell::changeEvent(QEvent* event) {
    ImageView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        updateGeometry();
}

void PictureWell::drawRect(QPainter& painter, const QRectF& rect) {
    ImageView::drawRect(painter, rect);
    if (!image().isNull())
        return;
    constexpr double arm = 7;
    const QPointF middle = QRectF(this->rect()).center();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(mixed(palette().color(QPalette::Text), palette().color(QPalette::Base), 0.65), 2,
                        Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(middle - QPointF(arm, 0), middle + QPointF(arm, 0));
    painter.drawLine(middle - QPointF(0, arm), middle + QPointF(0, arm));
}

void PictureWell::dragEnterEvent(QDragEnterEvent* event) {
    if (fileOf(*event).isEmpty())
        return;
    setDropHighlighted(true);
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void PictureWell::dragLeaveEvent(QDragLeaveEvent* /*event*/) {
    setDropHighlighted(false);
}

void PictureWell::dropEvent(QDropEvent* event) {
    setDropHighlighted(false);
    const QString path = fileOf(*event);
    if (path.isEmpty())
        return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    takeFile(path);
}

void PictureWell::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        accessiblePress();
}

void PictureWell::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if (key == Qt::Key_Space && !event->isAutoRepeat())
        accessiblePress();
    else if (key == Qt::Key_Delete || key == Qt::Key_Backspace)
        removePicture();
    else
        ImageView::keyPressEvent(event);
}

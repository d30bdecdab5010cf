#pragma once

#include "base/LongWork.h"
#include "imaging/drawing/Path.h"
#include "imaging/io/ImageSource.h"
#include "platform/widgets/Accessibility.h"
#include "platform/widgets/ImageView.h"

#include <functional>
#include <utility>

class QDropEvent;
class QMimeData;

/// A view's answer to a drag over it.
enum class DragOperation { None = 0, Copy = 1 };

/// The image well. It takes the picture that is dropped on it, and strokes the icons' border over the picture
/// as a preview. Each arrival posts the notification "imageAdded", without an object.
///
/// The well is highlighted while a drag is over it that carries a file and offers a copy.
class BorderImageView : public ImageView, public AccessiblePress {
    Q_OBJECT

  public:
    static const QString imageAdded;

    explicit BorderImageView(QWidget* parent = nullptr);

    /// Whether the border's outline has rounded corners.
    bool isRoundCorner() const { return _roundCorner; }
    void setRoundCorner(bool roundCorner);

    /// A fraction of the drawn rectangle's width and height. Any value is taken. See docs/compatibility.md.
    float cornerRadiusPercent() const { return _cornerRadiusPercent; }
    void setCornerRadiusPercent(float cornerRadiusPercent);

    bool isBorder() const { return _border; }
    void setBorder(bool border);

    /// A fraction of the drawn rectangle's width. The inner half of the border shows.
    float borderWidth() const { return _borderWidth; }
    void setBorderWidth(float borderWidth);

    /// Without a value the border has the colour of the painter's pen.
    const std::optional<Color>& borderColor() const { return _borderColor; }
    void setBorderColor(const std::optional<Color>& borderColor);

    /// Both answer Copy to every drag, whatever it carries.
    DragOperation draggingEntered(const QMimeData* sender);
    DragOperation draggingUpdated(const QMimeData* sender);

    /// Shows the last file of the drag's list and posts "imageAdded". A file that is no picture clears the
    /// view and posts "imageAdded" too. A drag without files changes nothing. Always true.
    bool performDragOperation(const QMimeData* sender);

    /// Shows the picture in the file at `path` and posts "imageAdded". A file that is no picture clears the
    /// view.
    void takeFile(const QString& path);

    /// Shows the picture with the file content `bytes` and posts "imageAdded". Bytes that are no picture
    /// clear the view.
    void takePicture(const QByteArray& bytes);

    /// The content that `takePicture` was given last; empty once a file was taken.
    const QByteArray& pastedBytes() const { return m_pastedBytes; }

    /// Tells what icons a picture will be drawn on, for each picture anew. No more pixels of a picture are
    /// kept than these icons need. Without it all are kept.
    void setRenders(std::function<ReducedCopies::Renders()> renders) { m_renders = std::move(renders); }

    /// How long a picture may be read before `readingTakesLong` is sent.
    void setPatience(LongWork::Milliseconds patience) { m_patience = patience; }

    /// The border's outline for the part `rect` of the view, with its line width.
    Path outline(const QRectF& rect) const;

    void accessiblePress() override { Q_EMIT pressed(); }

  Q_SIGNALS:
    /// The view was clicked, or Space or Return pressed in it.
    void pressed();
    /// Sent from within the reading, which goes on when the receivers return. They may paint.
    void readingTakesLong(const QString& path);
    /// The view shows `picture`, from the file at `path`. The path of pasted bytes is empty.
    void pictureArrived(const QString& path, const LoadedPicture& picture);
    /// The file at `path` is no picture that can be shown, for the reason `sentence`. The view is empty.
    void pictureRefused(const QString& path, const QString& sentence);

  protected:
    void drawRect(QPainter& painter, const QRectF& rect) override;

    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void followDrag(const QDropEvent& event);
    void endDrag();
    void read(const QString& path, const std::function<Result<LoadedPicture>(const LoadOptions&)>& load);
    void showArrived(const QString& path, const Result<LoadedPicture>& picture);
    void describe();

    bool _roundCorner = false;
    float _cornerRadiusPercent = 0;
    bool _border = false;
    float _borderWidth = 0;
    std::optional<Color> _borderColor;

    QByteArray m_pastedBytes;
    std::function<ReducedCopies::Renders()> m_renders;
    LongWork::Milliseconds m_patience{500};

    /// Whether the drag that entered last carries a file.
    bool m_carriesFile = false;
};

#pragma once

#include "imaging/drawing/Path.h"
#include "platform/widgets/Accessibility.h"
#include "platform/widgets/ImageView.h"

class QMimeData;

/// What a drag over a view may come to.
enum class DragOperation { None = 0, Copy = 1 };

/// The image well: takes the picture that is dropped on it, and strokes the icons' border over it as a
/// preview. Every arrival is announced by the notification "imageAdded", which carries no object.
class BorderImageView : public ImageView, public AccessiblePress {
    Q_OBJECT

  public:
    static const QString imageAdded;

    explicit BorderImageView(QWidget* parent = nullptr);

    /// Whether the border's outline has rounded corners.
    bool isRoundCorner() const { return _roundCorner; }
    void setRoundCorner(bool roundCorner);

    /// A fraction of the drawn rectangle's width and height; taken as it is, whatever it is.
    float cornerRadiusPercent() const { return _cornerRadiusPercent; }
    void setCornerRadiusPercent(float cornerRadiusPercent);

    bool isBorder() const { return _border; }
    void setBorder(bool border);

    /// A fraction of the drawn rectangle's width, of which the inner half shows.
    float borderWidth() const { return _borderWidth; }
    void setBorderWidth(float borderWidth);

    /// Without one the border has whatever colour the painter has.
    const std::optional<Color>& borderColor() const { return _borderColor; }
    void setBorderColor(const std::optional<Color>& borderColor);

    /// Both answer for any drag, whatever it carries.
    DragOperation draggingEntered(const QMimeData* sender);
    DragOperation draggingUpdated(const QMimeData* sender);

    /// Takes the last file of the drag's list as the view's picture and posts "imageAdded". A file that is no
    /// picture clears the view and is announced all the same; a drag without files changes nothing. True in
    /// every case.
    bool performDragOperation(const QMimeData* sender);

    /// Takes a picture that is not in a file, in the same way.
    void takePicture(const QByteArray& bytes);

    /// The border's outline for the part `rect` of the view, with its line width.
    Path outline(const QRectF& rect) const;

    void accessiblePress() override { Q_EMIT pressed(); }

  Q_SIGNALS:
    /// The view was clicked, or Space or Return pressed in it.
    void pressed();

  protected:
    void drawRect(QPainter& painter, const QRectF& rect) override;

    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showArrived(const Image& image);
    void describe();

    bool _roundCorner = false;
    float _cornerRadiusPercent = 0;
    bool _border = false;
    float _borderWidth = 0;
    std::optional<Color> _borderColor;
};

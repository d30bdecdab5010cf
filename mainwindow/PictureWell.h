#pragma once

#include "mainwindow/ShownPicture.h"
#include "platform/widgets/Accessibility.h"
#include "platform/widgets/ImageView.h"

/// A small well for one more picture. It takes the picture that is dropped on it, or one that is chosen after
/// a click. Delete removes the picture.
class PictureWell final : public ImageView, public AccessiblePress {
    Q_OBJECT

  public:
    explicit PictureWell(QWidget* parent = nullptr);

    const ShownPicture& picture() const { return m_picture; }
    /// Sends no signal.
    void setPicture(const ShownPicture& picture);

    /// Shows the picture in the file at `path`. One that can't be read is refused, and what was there stays.
    void takeFile(const QString& path);
    void removePicture();

    /// Asks for a file; where there is a picture, whether it is to be removed.
    void accessiblePress() override;

    QSize sizeHint() const override;

  Q_SIGNALS:
    /// The user has given another picture, or removed it.
    void pictureChanged();
    /// The file at `path` is no picture that can be shown, for the reason `sentence`.
    void pictureRefused(const QString& path, const QString& sentence);

  protected:
    void drawRect(QPainter& painter, const QRectF& rect) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void choose();
    void describe();

    ShownPicture m_picture;
};

#pragma once

#include <QWidget>

class ImageView;

/// The ground and the frame around an image view. A picture of any colour, or a transparent one, stands out
/// from it. The frame tells whether the view is empty, and whether the mouse or a drag is over it.
class ImageFrame final : public QWidget {
    Q_OBJECT

  public:
    explicit ImageFrame(QWidget* parent = nullptr);

    /// Surrounds `view`, a child. The view no longer draws a frame of its own.
    void surround(ImageView& view);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    const ImageView* m_view = nullptr;
};

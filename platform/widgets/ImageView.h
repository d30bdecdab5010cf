#pragma once

#include "imaging/image/Image.h"
#include "platform/widgets/Layer.h"

#include <QImage>
#include <QWidget>

/// Shows a picture, scaled proportionally into its bounds and centred, from as many samples as the display
/// has pixels; without a picture, an invitation.
class ImageView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

  public:
    explicit ImageView(QWidget* parent = nullptr);

    const Image& image() const { return m_image; }
    /// A null image clears the view.
    void setImage(const Image& image);

    /// What an empty view says; without it an empty view is blank.
    const QString& placeholderText() const { return m_placeholderText; }
    void setPlaceholderText(const QString& text);

    Layer& layer() { return m_layer; }
    const Layer& layer() const { return m_layer; }

    QSize sizeHint() const override;

  protected:
    /// Draws the view. `rect` is the part to be drawn, in the view's coordinates; `painter` has one saved
    /// state, which a subclass may restore if it saves another one in its place.
    virtual void drawRect(QPainter& painter, const QRectF& rect);

    /// Whether the view shows that what is being dragged over it may be dropped.
    void setDropHighlighted(bool highlighted);

    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    void drawPicture(QPainter& painter);
    void drawPlaceholder(QPainter& painter) const;

    Image m_image;
    QImage m_shown; ///< the picture at the size that it was last shown in
    QString m_placeholderText;
    Layer m_layer{*this};
    bool m_isDropHighlighted = false;
    bool m_showsFocus = false;
};

#pragma once

#include "imaging/image/Image.h"
#include "platform/widgets/Layer.h"

#include <QImage>
#include <QWidget>

/// Shows a picture, scaled proportionally into the view and centred. The picture is drawn with one sample for
/// each display pixel. Without a picture the view shows a placeholder.
class ImageView : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)

  public:
    explicit ImageView(QWidget* parent = nullptr);

    const Image& image() const { return m_image; }
    /// A null image clears the view.
    void setImage(const Image& image);

    /// The text of an empty view. Without this text an empty view is blank.
    const QString& placeholderText() const { return m_placeholderText; }
    void setPlaceholderText(const QString& text);

    /// A second text below the first, smaller and weaker.
    const QString& placeholderDetail() const { return m_placeholderDetail; }
    void setPlaceholderDetail(const QString& text);

    /// Whether a checkerboard shows where the picture is transparent.
    void setCheckered(bool isCheckered);

    /// Whether an empty view draws a frame. It does so unless something else frames it.
    void setFramed(bool isFramed);

    /// Whether the view shows that it would take the drag that is over it.
    bool isDropHighlighted() const { return m_isDropHighlighted; }
    /// Whether the mouse is over the view.
    bool isPointedAt() const { return m_isPointedAt; }

    Layer& layer() { return m_layer; }
    const Layer& layer() const { return m_layer; }

    QSize sizeHint() const override;

  Q_SIGNALS:
    /// Another picture or none, a drag that came or went, or the mouse.
    void looksChanged();

  protected:
    /// Draws the view. `rect` is the part to be drawn, in the view's coordinates. `painter` has one saved
    /// state. A subclass may restore that state if it saves another one in its place.
    virtual void drawRect(QPainter& painter, const QRectF& rect);

    void setDropHighlighted(bool highlighted);

    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    void drawPicture(QPainter& painter);
    void drawCheckerboard(QPainter& painter, const QRectF& rect) const;
    void drawFrame(QPainter& painter) const;
    void drawPlaceholder(QPainter& painter) const;
    void setPointedAt(bool isPointedAt);

    Image m_image;
    QImage m_shown; ///< the picture at the size at which it was shown last
    QString m_placeholderText;
    QString m_placeholderDetail;
    Layer m_layer{*this};
    bool m_isCheckered = false;
    bool m_isFramed = true;
    bool m_isDropHighlighted = false;
    bool m_isPointedAt = false;
    bool m_showsFocus = false;
};

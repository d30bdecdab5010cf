#pragma once

#include "base/Color.h"
#include "platform/widgets/Layer.h"

#include <QIcon>
#include <QPushButton>

#include <optional>

/// A button's title and how it is drawn. Without attributes it has the button's own font and colour.
struct AttributedTitle {
    struct Attributes {
        Color foreground;
        QFont font;
        Qt::Alignment alignment = Qt::AlignCenter;

        bool operator==(const Attributes&) const = default;
    };

    QString text;
    std::optional<Attributes> attributes;

    bool operator==(const AttributedTitle&) const = default;
};

/// A push button that changes its look on hover and when it is enabled or disabled. Its tag, 101 to 108,
/// chooses one of eight looks from fixed tables; with any other tag it keeps the look of its layout.
///
/// `setEnabled` and `isEnabled` replace those of the base class, which are not virtual. Call them through
/// this class.
class HighlightedButton final : public QPushButton {
    Q_OBJECT
    Q_PROPERTY(int tag READ tag WRITE setTag)
    Q_PROPERTY(int tagInDark READ tagInDark WRITE setTagInDark)
    Q_PROPERTY(QIcon alternateImage READ alternateImage WRITE setAlternateImage)

  public:
    explicit HighlightedButton(QWidget* parent = nullptr);

    /// Calls `awakeFromNib` on every button in `window`, as the last step of loading a layout.
    static void awakeAll(QWidget& window);

    int tag() const { return m_tag; }
    void setTag(int tag) { m_tag = tag; }

    /// The tag that the button takes while the desktop is dark. Without it, 0, the tag stays.
    int tagInDark() const { return m_tagInDark; }
    void setTagInDark(int tag) { m_tagInDark = tag; }

    /// The image of the highlighted and the disabled look. The image of the default look is `icon`.
    const QIcon& alternateImage() const { return m_alternateImage; }
    void setAlternateImage(const QIcon& image) { m_alternateImage = image; }

    /// The flag that was set last; `awakeFromNib` sets it to true. It may differ from the base class's flag.
    bool isEnabled() const { return m_isEnabled; }
    void setIsEnabled(bool isEnabled) { m_isEnabled = isEnabled; }
    /// Enables or disables the button and gives it the look for that.
    void setEnabled(bool isEnabled);

    const QIcon& imgNormalState() const { return _imgNormalState; }
    void setImgNormalState(const QIcon& image) { _imgNormalState = image; }
    const QIcon& imgSelectedState() const { return _imgSelectedState; }
    void setImgSelectedState(const QIcon& image) { _imgSelectedState = image; }

    void awakeFromNib();
    void createTrackingArea();

    // Both also work for a disabled button.
    void mouseEntered();
    void mouseExited();

    /// Shows the highlighted look for a tenth of a second. `flag` and `withFrame` are ignored; the background
    /// of `inView` is cleared. See docs/compatibility.md.
    void highlight(bool flag, const QRectF& withFrame, Layer& inView);

    void setButtonDefault();
    void setButtonHighlighted();
    void setDisabled();

    const AttributedTitle& attributedTitle() const { return m_attributedTitle; }
    void setAttributedTitle(const AttributedTitle& title);

    /// Whether a title that does not fit is shown whole in a tool tip.
    bool allowsExpansionToolTips() const { return m_allowsExpansionToolTips; }

    Layer& layer() { return m_layer; }
    const Layer& layer() const { return m_layer; }
    bool wantsLayer() const { return m_wantsLayer; }

    QSize sizeHint() const override;

  Q_SIGNALS:
    /// Sent each time that an attributed title is set.
    void attributedTitleSet(const AttributedTitle& title);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;

  private:
    AttributedTitle styledTitle(const Color& foreground, bool isBold) const;
    QFont systemFont(bool isBold) const;
    AttributedTitle shownTitle() const;
    int titleWidth() const;
    void drawContent(QPainter& painter);
    void drawFocusRing();
    void drawEdge(QPainter& painter) const;
    bool isDimmed() const;
    bool takeTagOfDesktop();
    QColor ground() const;

    int m_tag = 0;
    int m_tagInLight = 0;
    int m_tagInDark = 0;
    QIcon m_alternateImage;
    bool m_isEnabled = true;
    QIcon _imgNormalState;
    QIcon _imgSelectedState;
    AttributedTitle m_attributedTitle;
    bool m_hasAttributedTitle = false;
    bool m_allowsExpansionToolTips = false;
    bool m_wantsLayer = false;
    bool m_isTracking = false;
    bool m_isPointedAt = false;
    Layer m_layer{*this};
};

#include "mainwindow/HighlightedButton.h"

#include "mainwindow/ButtonLooks.h"
#include "platform/widgets/Contrast.h"
#include "platform/widgets/QtColor.h"

#include <QApplication>
#include <QEvent>
#include <QHelpEvent>
#include <QPainter>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QTimer>
#include <QToolTip>

namespace {

constexpr Color titleColor{1, 1, 1, 1};
constexpr Color black{0, 0, 0, 1};
constexpr Color clear{0, 0, 0, 0};

constexpr int highlightMilliseconds = 100;

/// `text` without the marks of mnemonics: "&File" becomes "File", "Salt && Pepper" becomes "Salt & Pepper".
QString withoutMnemonic(const QString& text) {
    QString result;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('&') && i + 1 < text.size())
            ++i;
        result += text[i];
    }
    return result;
}

} // namespace

HighlightedButton::HighlightedButton(QWidget* parent) : QPushButton(parent) {}

void HighlightedButton::awakeAll(QWidget& window) {
    for (HighlightedButton* button : window.findChildren<HighlightedButton*>())
        button->awakeFromNib();
}

void HighlightedButton::awakeFromNib() {
    m_isEnabled = true;
    m_tagInLight = m_tag;
    takeTagOfDesktop();
    _imgNormalState = icon();
    _imgSelectedState = m_alternateImage;
    setButtonDefault();
    createTrackingArea();
    // The look may need more room.
    updateGeometry();
}

/// True where the tag changes.
bool HighlightedButton::takeTagOfDesktop() {
    const int before = m_tag;
    if (m_tagInDark != 0 && m_tagInLight != 0)
        m_tag = isDark(palette()) ? m_tagInDark : m_tagInLight;
    return m_tag != before;
}

void HighlightedButton::createTrackingArea() {
    m_isTracking = true;
    setAttribute(Qt::WA_Hover);
}

void HighlightedButton::mouseEntered() {
    // Over a disabled widget Qt shows the pointer of the widget's window.
    window()->setCursor(Qt::PointingHandCursor);
    m_isPointedAt = true;
    setButtonHighlighted();
}

void HighlightedButton::mouseExited() {
    window()->setCursor(Qt::ArrowCursor);
    m_isPointedAt = false;
    setButtonDefault();
}

void HighlightedButton::setEnabled(bool isEnabled) {
    m_isEnabled = isEnabled;
    QPushButton::setEnabled(isEnabled);
    if (isEnabled)
        setButtonDefault();
    else
        setDisabled();
}

void HighlightedButton::highlight(bool /*flag*/, const QRectF& /*withFrame*/, Layer& inView) {
    inView.setBackgroundColor(clear);
    setButtonHighlighted();
    QTimer::singleShot(highlightMilliseconds, this, &HighlightedButton::setButtonDefault);
}

QFont HighlightedButton::systemFont(bool isBold) const {
    QFont system = QApplication::font("QPushButton");
    if (font().pointSizeF() > 0)
        system.setPointSizeF(font().pointSizeF());
    else
        system.setPixelSize(font().pixelSize());
    system.setBold(isBold);
    return system;
}

AttributedTitle HighlightedButton::styledTitle(const Color& foreground, bool isBold) const {
    if (text().isEmpty())
        return {};
    return {text(), AttributedTitle::Attributes{foreground, systemFont(isBold), Qt::AlignCenter}};
}

void HighlightedButton::setAttributedTitle(const AttributedTitle& title) {
    m_attributedTitle = title;
    m_hasAttributedTitle = true;
    update();
    Q_EMIT attributedTitleSet(title);
}

namespace {

/// Gives `button` the look of `row`. `title` is the button's title in the first style of that look.
void applyRow(HighlightedButton& button, const ButtonLookRow& row, AttributedTitle title,
              const QFont& regularFont) {
    Layer& layer = button.layer();
    button.setIcon(row.picture == ButtonPicture::Normal     ? button.imgNormalState()
                   : row.picture == ButtonPicture::Selected ? button.imgSelectedState()
                                                            : QIcon());
    if (row.background)
        layer.setBackgroundColor(row.background);
    if (row.cornerRadius)
        layer.setCornerRadius(*row.cornerRadius);
    if (row.borderColor)
        layer.setBorderColor(row.borderColor);
    if (row.borderWidth)
        layer.setBorderWidth(*row.borderWidth);
    constexpr int twice = 2;
    if (row.timesTitleIsSet == twice)
        button.setAttributedTitle(title);
    if (title.attributes && row.hasRegularFont)
        title.attributes->font = regularFont;
    if (title.attributes && row.foreground)
        title.attributes->foreground = *row.foreground;
    if (row.timesTitleIsSet > 0)
        button.setAttributedTitle(title);
}

} // namespace

void HighlightedButton::setButtonDefault() {
    const AttributedTitle title = styledTitle(titleColor, false);
    if (const ButtonLookRow* row = rowOf(ButtonLook::Default, m_tag)) {
        m_wantsLayer = m_wantsLayer || row->wantsLayer;
        applyRow(*this, *row, title, systemFont(false));
    }
    m_allowsExpansionToolTips = true;
}

void HighlightedButton::setButtonHighlighted() {
    const AttributedTitle title = styledTitle(titleColor, true);
    if (const ButtonLookRow* row = rowOf(ButtonLook::Highlighted, m_tag)) {
        m_wantsLayer = m_wantsLayer || row->wantsLayer;
        applyRow(*this, *row, title, systemFont(false));
    }
}

void HighlightedButton::setDisabled() {
    const AttributedTitle title = styledTitle(black, true);
    if (const ButtonLookRow* row = rowOf(ButtonLook::Disabled, m_tag)) {
        m_wantsLayer = m_wantsLayer || row->wantsLayer;
        applyRow(*this, *row, title, systemFont(false));
    }
}

QSize HighlightedButton::sizeHint() const {
    // Room for the same title in bold.
    const int bolder =
        QFontMetrics(systemFont(true)).horizontalAdvance(text()) - fontMetrics().horizontalAdvance(text());
    const int padding = m_wantsLayer ? 24 : 0;
    return QPushButton::sizeHint() + QSize(qMax(0, bolder) + padding, m_wantsLayer ? 6 : 0);
}

AttributedTitle HighlightedButton::shownTitle() const {
    // A text that was set after the attributed title has no attributes.
    return m_attributedTitle.text == text() ? m_attributedTitle : AttributedTitle{text(), std::nullopt};
}

int HighlightedButton::titleWidth() const {
    constexpr int margin = 6;
    constexpr int gap = 4;
    return width() - 2 * margin - (icon().isNull() ? 0 : iconSize().width() + gap);
}

/// Draws the image and the title, side by side in the middle.
void HighlightedButton::drawContent(QPainter& painter) {
    constexpr int gap = 4;
    constexpr double disabledOpacity = 0.6;
    painter.save();
    if (!QPushButton::isEnabled() && !isDimmed())
        painter.setOpacity(disabledOpacity);
    const AttributedTitle whole = shownTitle();
    AttributedTitle::Attributes attributes = whole.attributes.value_or(AttributedTitle::Attributes{
        fromQColor(palette().color(QPalette::ButtonText)), font(), Qt::AlignCenter});
    if (isDimmed())
        attributes.foreground = fromQColor(palette().color(QPalette::Disabled, QPalette::WindowText));
    painter.setFont(attributes.font);
    painter.setPen(toQColor(attributes.foreground));
    const QFontMetrics metrics(attributes.font);
    const QString title = metrics.elidedText(whole.text, Qt::ElideRight, titleWidth(), Qt::TextShowMnemonic);
    const int shownWidth = metrics.size(Qt::TextShowMnemonic, title).width();
    const int iconWidth = icon().isNull() ? 0 : iconSize().width();
    const int between = iconWidth > 0 && !title.isEmpty() ? gap : 0;
    const int left = (width() - iconWidth - between - shownWidth) / 2;
    const int flags =
        Qt::AlignVCenter | (QPushButton::style()->styleHint(QStyle::SH_UnderlineShortcut, nullptr, this) != 0
                                ? Qt::TextShowMnemonic
                                : Qt::TextHideMnemonic);
    const QRect imageRect =
        QStyle::visualRect(layoutDirection(), rect(),
                           QRect(left, (height() - iconSize().height()) / 2, iconWidth, iconSize().height()));
    const QRect titleRect = QStyle::visualRect(
        layoutDirection(), rect(), QRect(left + iconWidth + between, 0, shownWidth + 1, height()));
    if (iconWidth > 0)
        icon().paint(&painter, imageRect, Qt::AlignCenter,
                     QPushButton::isEnabled() ? QIcon::Normal : QIcon::Disabled);
    painter.drawText(titleRect, flags, title);
    painter.restore();
}

/// Whether the button is disabled, and its table has no look for that. A button with colours of its own then
/// shows little of them, unless the mouse is over it.
bool HighlightedButton::isDimmed() const {
    return !QPushButton::isEnabled() && !m_isPointedAt && m_layer.backgroundColor() &&
           rowOf(ButtonLook::Disabled, m_tag) == nullptr;
}

/// What the button stands on.
QColor HighlightedButton::ground() const {
    return parentWidget() != nullptr ? parentWidget()->palette().color(parentWidget()->backgroundRole())
                                     : palette().color(QPalette::Window);
}

/// Draws an outline where the button's colour alone does not stand out from its ground.
void HighlightedButton::drawEdge(QPainter& painter) const {
    if (!m_layer.backgroundColor() || m_layer.borderColor() || !QPushButton::isEnabled())
        return;
    const QColor own = toQColor(*m_layer.backgroundColor());
    if (contrastRatio(mixed(own, ground(), own.alphaF()), ground()) >= leastEdgeContrast)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(mixed(palette().color(QPalette::WindowText), ground(), 0.5), 1));
    const double radius = qMax(0.0, m_layer.cornerRadius() - 0.5);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

void HighlightedButton::paintEvent(QPaintEvent* event) {
    if (!m_hasAttributedTitle && !m_layer.backgroundColor()) {
        QPushButton::paintEvent(event);
        return;
    }
    if (isDimmed()) {
        constexpr float share = 0.15F;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        QColor own = toQColor(*m_layer.backgroundColor());
        own.setAlphaF(own.alphaF() * share);
        painter.setBrush(own);
        painter.drawRoundedRect(rect(), m_layer.cornerRadius(), m_layer.cornerRadius());
        drawContent(painter);
        return;
    }
    m_layer.draw(event->rect(), [this](QPainter& painter) {
        if (!m_layer.backgroundColor() && !isFlat()) {
            QStyleOptionButton option;
            initStyleOption(&option);
            option.text.clear();
            option.icon = QIcon();
            style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter, this);
        }
        drawContent(painter);
        drawEdge(painter);
        if (isDown()) {
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(QColor(0, 0, 0, 40));
            painter.drawRoundedRect(rect(), m_layer.cornerRadius(), m_layer.cornerRadius());
        }
    });
    if (hasFocus())
        drawFocusRing();
}

/// Draws two lines. One of them stands out from any background.
void HighlightedButton::drawFocusRing() {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const double radius = m_layer.cornerRadius();
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    const QColor ground =
        m_layer.backgroundColor() ? toQColor(*m_layer.backgroundColor()) : palette().color(QPalette::Button);
    constexpr int middle = 128;
    painter.setPen(QPen(ground.lightness() < middle ? Qt::white : Qt::black, 1));
    painter.drawRoundedRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5), qMax(0.0, radius - 2),
                            qMax(0.0, radius - 2));
}

void HighlightedButton::enterEvent(QEnterEvent* event) {
    QPushButton::enterEvent(event);
    // Only while the application is active.
    if (m_isTracking && QGuiApplication::applicationState() == Qt::ApplicationActive)
        mouseEntered();
}

void HighlightedButton::leaveEvent(QEvent* event) {
    QPushButton::leaveEvent(event);
    if (m_isTracking)
        mouseExited();
}

void HighlightedButton::changeEvent(QEvent* event) {
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && takeTagOfDesktop()) {
        if (m_isEnabled)
            setButtonDefault();
        else
            setDisabled();
    }
    if (event->type() != QEvent::FontChange || !m_attributedTitle.attributes)
        return;
    // The title keeps its look and takes the button's new font size.
    m_attributedTitle.attributes->font = systemFont(m_attributedTitle.attributes->font.bold());
    updateGeometry();
    update();
}

bool HighlightedButton::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && m_allowsExpansionToolTips) {
        const AttributedTitle title = shownTitle();
        const QFontMetrics metrics(title.attributes ? title.attributes->font : font());
        if (metrics.size(Qt::TextShowMnemonic, title.text).width() > titleWidth()) {
            QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), withoutMnemonic(title.text),
                               this);
            return true;
        }
    }
    return QPushButton::event(event);
}

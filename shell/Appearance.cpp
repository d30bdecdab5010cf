#include "shell/Appearance.h"

#include "platform/widgets/Contrast.h"
#include "platform/widgets/OutlineStyle.h"
#include "platform/widgets/QtColor.h"

#include <QApplication>
#include <QEvent>

namespace {

/// The share of the text colour in disabled text. Such text has less contrast but stays readable; desktops go
/// as low as 1.5 : 1.
constexpr double disabledShare = 0.6;
constexpr double placeholderShare = 0.75;

struct Colors {
    QColor window;
    QColor base;
    QColor button;
    QColor text;
    QColor toolTip;
    QColor accent;
    QColor onAccent;
};

Colors colorsFor(bool isDark) {
    if (isDark)
        return {QColor(32, 33, 36), QColor(54, 55, 59),    QColor(58, 60, 64), QColor(240, 240, 242),
                QColor(58, 60, 64), QColor(110, 180, 250), QColor(20, 20, 22)};
    return {QColor(240, 240, 242), QColor(255, 255, 255), QColor(250, 250, 251), QColor(28, 28, 31),
            QColor(255, 255, 255), QColor(10, 95, 180),   QColor(255, 255, 255)};
}

} // namespace

Appearance::Appearance(QApplication& application) : m_application(application) {
    QApplication::setStyle(new OutlineStyle);
    apply();
    application.installEventFilter(this);
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_application && event->type() == QEvent::ApplicationPaletteChange)
        apply();
    return QObject::eventFilter(watched, event);
}

QPalette Appearance::over(const QPalette& desktop) {
    const Colors colors = colorsFor(isDark(desktop));
    QPalette ours;
    ours.setResolveMask(0);
    const auto pair = [&](QPalette::ColorRole ground, const QColor& groundColor, QPalette::ColorRole text) {
        ours.setColor(ground, groundColor);
        ours.setColor(text, colors.text);
        ours.setColor(QPalette::Disabled, text, mixed(colors.text, groundColor, disabledShare));
    };
    pair(QPalette::Window, colors.window, QPalette::WindowText);
    pair(QPalette::Base, colors.base, QPalette::Text);
    pair(QPalette::Button, colors.button, QPalette::ButtonText);
    pair(QPalette::ToolTipBase, colors.toolTip, QPalette::ToolTipText);
    ours.setColor(QPalette::AlternateBase, mixed(colors.text, colors.base, 0.04));
    ours.setColor(QPalette::PlaceholderText, mixed(colors.text, colors.base, placeholderShare));
    ours.setColor(QPalette::Highlight, colors.accent);
    ours.setColor(QPalette::HighlightedText, colors.onAccent);
    ours.setColor(QPalette::Link, colors.accent);
    ours.setColor(QPalette::LinkVisited, colors.accent);
    // The edges that a style draws around raised and sunken parts.
    ours.setColor(QPalette::Light, mixed(Qt::white, colors.button, isDark(desktop) ? 0.1 : 0.8));
    ours.setColor(QPalette::Midlight, mixed(Qt::white, colors.button, isDark(desktop) ? 0.05 : 0.4));
    ours.setColor(QPalette::Mid, mixed(Qt::black, colors.button, 0.25));
    ours.setColor(QPalette::Dark, mixed(Qt::black, colors.button, 0.4));
    ours.setColor(QPalette::Shadow, mixed(Qt::black, colors.button, 0.7));
    return ours;
}

void Appearance::apply() {
    // Setting the palette sends ApplicationPaletteChange again.
    if (m_isApplying)
        return;
    m_isApplying = true;
    // An empty palette brings the desktop's colours back. Ours are then laid over them.
    QApplication::setPalette(QPalette());
    QApplication::setPalette(over(QApplication::palette()));
    m_isApplying = false;
}

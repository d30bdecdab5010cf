#include "shell/Appearance.h"

#include "platform/widgets/QtColor.h"

#include <QApplication>
#include <QEvent>

namespace {

/// What is disabled is told by less contrast, but can be read: desktops go as low as 1.5 : 1.
constexpr double disabledShare = 0.6;

} // namespace

Appearance::Appearance(QApplication& application) : m_application(application) {
    apply();
    application.installEventFilter(this);
}

bool Appearance::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_application && event->type() == QEvent::ApplicationPaletteChange)
        apply();
    return QObject::eventFilter(watched, event);
}

QPalette Appearance::over(const QPalette& desktop) {
    QPalette ours;
    ours.setResolveMask(0);
    const auto dim = [&](QPalette::ColorRole text, QPalette::ColorRole ground) {
        ours.setColor(QPalette::Disabled, text,
                      mixed(desktop.color(QPalette::Active, text), desktop.color(QPalette::Active, ground),
                            disabledShare));
    };
    dim(QPalette::WindowText, QPalette::Window);
    dim(QPalette::Text, QPalette::Base);
    dim(QPalette::ButtonText, QPalette::Button);
    return ours;
}

void Appearance::apply() {
    const QPalette current = QApplication::palette();
    const QPalette ours = over(current);
    // Setting a palette is a change of it, too.
    if (ours.resolve(current) != current)
        QApplication::setPalette(ours);
}

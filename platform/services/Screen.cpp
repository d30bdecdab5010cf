#include "platform/services/Screen.h"

#include <QGuiApplication>
#include <QScreen>

int Screen::scale() const {
    const auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    const QScreen* screen = application != nullptr ? QGuiApplication::primaryScreen() : nullptr;
    if (screen == nullptr)
        return 1;
    return screen->devicePixelRatio() > 1 ? 2 : 1;
}

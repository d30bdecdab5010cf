#include "platform/services/Screen.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

int Screen::scale() const {
    const auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    const QScreen* screen = application != nullptr ? QGuiApplication::primaryScreen() : nullptr;
    if (screen == nullptr)
        return 1;
    return std::max(1, static_cast<int>(std::lround(screen->devicePixelRatio())));
}

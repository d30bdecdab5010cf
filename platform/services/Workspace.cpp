#include "platform/services/Workspace.h"

#include <QDesktopServices>
#include <QGuiApplication>

bool Workspace::openURL(const QUrl& url) {
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr)
        return false;
    return QDesktopServices::openUrl(url);
}

#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// What the file has; "(unreadable)" where it can't be read.
inline QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

#include "platform/Bundle.h"

#include <QCoreApplication>
#include <QFile>

QString Bundle::pathForResource(const QString& name) const {
    QStringList candidates;
    if (QCoreApplication::instance() != nullptr) {
        const QString programFolder = QCoreApplication::applicationDirPath();
        candidates << programFolder + QStringLiteral("/../share/tobrimax/") + name
                   << programFolder + QStringLiteral("/../Resources/") + name;
    }
    candidates << QStringLiteral(":/resources/") + name;
    for (const QString& path : std::as_const(candidates)) {
        if (QFile::exists(path))
            return path;
    }
    return {};
}

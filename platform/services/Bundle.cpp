#include "platform/services/Bundle.h"

#include "platform/services/PropertyList.h"

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

QVariantMap Bundle::infoDictionary() const {
    QFile file(pathForResource(QStringLiteral("Info.plist")));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const Result<QVariant> dictionary = PropertyList::parse(file.readAll());
    return dictionary ? dictionary->toMap() : QVariantMap();
}

QString Bundle::localizedStringForKey(const QString& key, const QString& value, const QString& table) {
    const QByteArray context = table.isEmpty() ? QByteArrayLiteral("Localizable") : table.toUtf8();
    // Qt answers with the key where it has no translation.
    QString text = QCoreApplication::translate(context.constData(), key.toUtf8().constData());
    return text == key && !value.isEmpty() ? value : text;
}

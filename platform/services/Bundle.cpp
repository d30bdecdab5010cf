#include "platform/services/Bundle.h"

#include "platform/services/PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

/// The first of the paths that exists, else an empty one.
QString firstThere(const QStringList& candidates) {
    const auto found =
        std::ranges::find_if(candidates, [](const QString& path) { return QFile::exists(path); });
    return found != candidates.end() ? *found : QString();
}

/// The folder of the running program.
QString programFolder() {
    if (QCoreApplication::instance() != nullptr)
        return QCoreApplication::applicationDirPath();
    // A program without an application object: Linux tells its path.
    const QString program = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    return program.isEmpty() ? QStringLiteral(".") : QFileInfo(program).absolutePath();
}

} // namespace

QString Bundle::pathForResource(const QString& name) const {
    QStringList candidates;
    if (QCoreApplication::instance() != nullptr) {
        const QString programFolder = QCoreApplication::applicationDirPath();
        candidates << programFolder + QStringLiteral("/../share/tobrimax/") + name
                   << programFolder + QStringLiteral("/../Resources/") + name;
    }
    return firstThere(candidates << QStringLiteral(":/resources/") + name);
}

QString Bundle::pathForDocument(const QString& name) const {
    const QString programFolder = QCoreApplication::applicationDirPath();
    return firstThere({programFolder + QStringLiteral("/../share/doc/tobrimax/") + name,
                       programFolder + QStringLiteral("/../Resources/doc/") + name});
}

QString Bundle::pathOfHelper(const QString& name) {
    const QString folder = programFolder();
    const QString inBuildFolder = QStringLiteral("svgworker/") + name;
    const QStringList candidates{
        folder + QStringLiteral("/" HELPER_FOLDER "/") + name, folder + QStringLiteral("/../Helpers/") + name,
        folder + QStringLiteral("/../") + inBuildFolder, folder + QStringLiteral("/../../") + inBuildFolder};
    for (const QString& path : candidates) {
        if (QFileInfo(path).isExecutable())
            return QDir::cleanPath(path);
    }
    return QDir::cleanPath(candidates.first());
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

#include "generation/OutputFolder.h"

#include "files/FilePath.h"
#include "generation/Platforms.h"

#include <QStringList>

QString OutputFolder::appiconsetPathString(const QString& outputPathString, const QString& idiom) {
    return outputPathString + u'/' + Platforms::folder(idiom);
}

std::optional<QString> OutputFolder::pngPath(const QString& appiconsetPath, const QString& name) {
    const std::optional<QString> folder = replacingPercentEscapes(appiconsetPath);
    if (!folder || name.contains(QChar::Null) || name.split(u'/').contains(QLatin1String("..")))
        return std::nullopt;
    return appendingPathComponent(*folder, name + QStringLiteral(".png"));
}

std::optional<QString> OutputFolder::containerPath(const QString& appiconsetPath) {
    const std::optional<QString> folder = replacingPercentEscapes(deletingLastPathComponent(appiconsetPath));
    if (!folder)
        return std::nullopt;
    return appendingPathComponent(*folder, QStringLiteral("Application.icns"));
}

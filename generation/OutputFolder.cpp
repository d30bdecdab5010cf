#include "generation/OutputFolder.h"

#include "files/FilePath.h"
#include "generation/Platforms.h"

#include <QStringList>

namespace {

Error outside() {
    return {ErrorCode::NotAPath, QStringLiteral("not a path inside the output folder")};
}

QString containerIn(const QString& folder) {
    return appendingPathComponent(folder,
                                  QLatin1String(OutputFolder::containerName) + QStringLiteral(".icns"));
}

} // namespace

QString OutputFolder::appiconsetPathString(const QString& outputPathString, const QString& idiom) {
    return outputPathString + u'/' + Platforms::folder(idiom);
}

Result<QString> OutputFolder::pngPath(const QString& appiconsetPath, const QString& name) {
    const Result<QString> folder = replacingPercentEscapes(appiconsetPath);
    return folder ? pngIn(*folder, name) : outside();
}

Result<QString> OutputFolder::containerPath(const QString& appiconsetPath) {
    const Result<QString> folder = replacingPercentEscapes(deletingLastPathComponent(appiconsetPath));
    return folder ? containerIn(*folder) : folder;
}

Result<QString> OutputFolder::pngIn(const QString& folder, const QString& name) {
    if (name.contains(QChar::Null) || name.split(u'/').contains(QLatin1String("..")))
        return outside();
    return appendingPathComponent(folder, name + QStringLiteral(".png"));
}

QString OutputFolder::containerBeside(const QString& folder) {
    return containerIn(deletingLastPathComponent(folder));
}

QString OutputFolder::shownPngPath(const QString& folder, const QString& name) {
    return folder + u'/' + name + QStringLiteral(".png");
}

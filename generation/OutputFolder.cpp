#include "generation/OutputFolder.h"

#include "files/FilePath.h"
#include "generation/GenerationInput.h"
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

/// The folder that files are written to.
Result<QString> writtenFolder(const GenerationInput& input, const QString& folder) {
    return input.replacesPercentEscapes() ? replacingPercentEscapes(folder) : folder;
}

} // namespace

QString OutputFolder::appiconsetPathString(const QString& outputPathString, const QString& idiom) {
    return outputPathString + u'/' + Platforms::folder(idiom);
}

Result<QString> OutputFolder::pngPath(const GenerationInput& input, const QString& idiom,
                                      const QString& name) {
    const Result<QString> folder =
        writtenFolder(input, appiconsetPathString(input.outputPathString(), idiom));
    return folder ? pngIn(*folder, name) : outside();
}

Result<QString> OutputFolder::containerPath(const GenerationInput& input, const QString& idiom) {
    const QString folder = appiconsetPathString(input.outputPathString(), idiom);
    const Result<QString> written = writtenFolder(input, deletingLastPathComponent(folder));
    return written ? containerIn(*written) : written;
}

Result<QString> OutputFolder::pngIn(const QString& folder, const QString& name) {
    // The last part gets a suffix, so it is never "..".
    const QStringList folders = name.split(u'/').mid(0, name.count(u'/'));
    if (name.contains(QChar::Null) || folders.contains(QLatin1String("..")))
        return outside();
    return appendingPathComponent(folder, name + QStringLiteral(".png"));
}

QString OutputFolder::containerBeside(const QString& folder) {
    return containerIn(deletingLastPathComponent(folder));
}

QString OutputFolder::shownPngPath(const QString& folder, const QString& name) {
    return folder + u'/' + name + QStringLiteral(".png");
}

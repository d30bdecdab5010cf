#include "cli/generate/PictureName.h"

#include "cli/common/InputFile.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"

QString pictureName(const std::string& path) {
    if (InputFile::isStandardInput(path))
        return QStringLiteral("icon");
    const QString file = lastPathComponent(PathBytes::decoded(path));
    const qsizetype dot = file.lastIndexOf(u'.');
    const QString name = dot > 0 ? file.first(dot) : file;
    return name == QLatin1String(".") || name == QLatin1String("..") ? file : name;
}

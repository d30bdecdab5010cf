#include "cli/generate/PictureName.h"

#include "files/FilePath.h"
#include "files/PathBytes.h"

QString pictureName(const std::string& path) {
    const QString file = lastPathComponent(PathBytes::decoded(path));
    const qsizetype dot = file.lastIndexOf(u'.');
    const QString name = dot > 0 ? file.first(dot) : file;
    return name == QLatin1String(".") || name == QLatin1String("..") ? file : name;
}

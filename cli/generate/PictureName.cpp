#include "cli/generate/PictureName.h"

#include "cli/common/InputFile.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"

QString pictureName(const std::string& path) {
    if (InputFile::isStandardInput(path))
        return QStringLiteral("icon");
    return nameWithoutEnding(PathBytes::decoded(path));
}

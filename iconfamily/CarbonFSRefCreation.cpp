#include "iconfamily/CarbonFSRefCreation.h"

#include "platform/AtomicFile.h"

#include <QFileInfo>

bool CarbonFSRefCreation::getFSRef(const QString& path, FSRef& reference, bool createFileIfNecessary) {
    // A NUL would end the name before its end.
    if (path.isEmpty() || path.contains(QChar::Null))
        return false;
    if (!QFileInfo::exists(path) && (!createFileIfNecessary || !AtomicFile::write(path, {})))
        return false;
    // The item itself, whatever links lead to it.
    reference.path = QFileInfo(path).canonicalFilePath();
    return !reference.path.isEmpty();
}

#include "iconfamily/CarbonFSRefCreation.h"

#include "base/ShortMemory.h"
#include "files/AtomicFile.h"

#include <QFileInfo>

bool CarbonFSRefCreation::getFSRef(const QString& path, FSRef& reference, bool createFileIfNecessary) {
    // A NUL would end the name before its end.
    if (path.isEmpty() || path.contains(QChar::Null))
        return false;
    const auto isMade = [&] { return AtomicFile::write(path, {}).operator bool(); };
    if (!QFileInfo::exists(path) && (!createFileIfNecessary || !unlessMemoryIsShort(isMade)))
        return false;
    // The item itself, whatever links lead to it.
    reference.path = QFileInfo(path).canonicalFilePath();
    return !reference.path.isEmpty();
}

#include "iconfamily/CarbonFSRefCreation.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "files/AtomicFile.h"
#include "files/FileItem.h"
#include "files/PathBytes.h"

#include <sys/stat.h>

#include <cerrno>

Result<FSRef> CarbonFSRefCreation::reference(const QString& path, bool createFileIfNecessary) {
    return unlessMemoryIsShort([&]() -> Result<FSRef> {
        // A NUL would cut the name off.
        if (path.isEmpty() || path.contains(QChar::Null))
            return Error{ErrorCode::NotAPath, QStringLiteral("not a path")};
        const auto found = [&]() -> Result<Done> {
            struct stat status {};
            if (stat(PathBytes::encoded(path).constData(), &status) == 0)
                return Done{};
            return systemError(errno, errno == ENOENT ? ErrorCode::NotFound : ErrorCode::NotReadable);
        };
        Result<Done> isThere = found();
        if (!isThere && createFileIfNecessary)
            isThere = AtomicFile::write(path, {});
        if (!isThere)
            return isThere.error();
        // The item's own path, with all links resolved.
        FSRef reference{FileItem::canonicalPath(path)};
        if (reference.path.isEmpty())
            return systemError(ENOENT, ErrorCode::NotFound);
        return reference;
    });
}

bool CarbonFSRefCreation::getFSRef(const QString& path, FSRef& reference, bool createFileIfNecessary) {
    Result<FSRef> found = CarbonFSRefCreation::reference(path, createFileIfNecessary);
    if (found)
        reference = std::move(*found);
    return found.operator bool();
}

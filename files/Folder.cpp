#include "files/Folder.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "files/PathBytes.h"

#include <sys/stat.h>

#include <cerrno>

namespace {

bool isFolder(const QByteArray& path) {
    struct stat status = {};
    return stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// Why what has that name is no folder. A link that leads nowhere is none.
int obstacle(const QByteArray& path) {
    struct stat status = {};
    return stat(path.constData(), &status) != 0 && errno != ENOENT ? errno : ENOTDIR;
}

Result<Done> created(const QString& path) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return Error{ErrorCode::NotAPath, QStringLiteral("not a path")};
    const QByteArray name = PathBytes::encoded(path);
    if (isFolder(name))
        return Done{};
    constexpr mode_t everybody = 0777; // less the process's umask
    for (qsizetype end = 1; end <= name.size(); ++end) {
        if (end < name.size() && name[end] != '/')
            continue;
        const QByteArray part = name.left(end);
        if (mkdir(part.constData(), everybody) == 0)
            continue;
        const int error = errno;
        if (!isFolder(part))
            return about(PathBytes::decoded(part),
                         systemError(error == EEXIST ? obstacle(part) : error, ErrorCode::NotWritable));
    }
    return Done{};
}

} // namespace

Result<Done> Folder::create(const QString& path) {
    return unlessMemoryIsShort([&] { return created(path); });
}

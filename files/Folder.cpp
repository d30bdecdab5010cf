#include "files/Folder.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "files/FileItem.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"

#include <sys/stat.h>
#include <unistd.h>

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

/// Calls `make` with the path of each folder, from the top. It returns 0 or an errno value.
template <class Make>
Result<Done> madeBy(const Make& make, const QString& path) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return Error{ErrorCode::NotAPath, QStringLiteral("not a path")};
    const QByteArray name = PathBytes::encoded(path);
    if (isFolder(name))
        return Done{};
    for (qsizetype end = 1; end <= name.size(); ++end) {
        if (end < name.size() && name[end] != '/')
            continue;
        const QByteArray part = name.left(end);
        const int error = make(part);
        if (error != 0 && !isFolder(part))
            return about(PathBytes::decoded(part),
                         systemError(error == EEXIST ? obstacle(part) : error, ErrorCode::NotWritable));
    }
    return Done{};
}

Result<Done> created(const QString& path) {
    constexpr mode_t everybody = 0777; // less the process's umask
    return madeBy([](const QByteArray& part) { return mkdir(part.constData(), everybody) == 0 ? 0 : errno; },
                  path);
}

Result<Done> checked(const QString& path) {
    bool isAbovePlanned = false;
    const auto check = [&](const QByteArray& part) {
        struct stat status = {};
        if (isAbovePlanned)
            return 0;
        if (lstat(part.constData(), &status) == 0)
            return EEXIST;
        if (errno != ENOENT)
            return errno;
        isAbovePlanned = true;
        const QByteArray above = part.left(part.lastIndexOf('/') + 1);
        return access(above.isEmpty() ? "." : above.constData(), W_OK | X_OK) == 0 ? 0 : errno;
    };
    return madeBy(check, path);
}

} // namespace

Result<Done> Folder::check(const QString& path) {
    return unlessMemoryIsShort([&] { return checked(path); });
}

Result<Done> Folder::create(const QString& path) {
    return unlessMemoryIsShort([&] { return created(path); });
}

Result<Done> Folder::checkTarget(const QString& path) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return Error{ErrorCode::NotAPath, QStringLiteral("not a path")};
    QString nearest = FileItem::absolutePath(path);
    while (!FileItem::isThere(nearest) && nearest != QLatin1String("/"))
        nearest = deletingLastPathComponent(nearest);
    const QByteArray name = PathBytes::encoded(nearest);
    struct stat status = {};
    // A link that leads nowhere is no folder.
    if (stat(name.constData(), &status) != 0)
        return systemError(errno == ENOENT ? ENOTDIR : errno, ErrorCode::NotWritable);
    if (!S_ISDIR(status.st_mode))
        return systemError(ENOTDIR, ErrorCode::NotWritable);
    if (access(name.constData(), W_OK | X_OK) != 0)
        return systemError(errno, ErrorCode::NotWritable);
    return Done{};
}

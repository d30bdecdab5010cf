#include "files/FileItem.h"

#include "files/PathBytes.h"

#include <QDir>

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>

namespace {

using Inquiry = int (*)(const char* path, struct stat* status);

/// The type and permissions of the item. No value if there is none.
std::optional<mode_t> mode(const QString& path, Inquiry inquiry) {
    struct stat status {};
    if (path.isEmpty() || path.contains(QChar::Null) ||
        inquiry(PathBytes::encoded(path).constData(), &status) != 0)
        return std::nullopt;
    return status.st_mode;
}

} // namespace

bool FileItem::exists(const QString& path) {
    return mode(path, stat).has_value();
}

bool FileItem::isThere(const QString& path) {
    return mode(path, lstat).has_value();
}

bool FileItem::isFolder(const QString& path) {
    const std::optional<mode_t> found = mode(path, stat);
    return found && S_ISDIR(*found);
}

bool FileItem::isLink(const QString& path) {
    const std::optional<mode_t> found = mode(path, lstat);
    return found && S_ISLNK(*found);
}

FileItem::Stamp FileItem::stamp(const QString& path) {
    struct stat status {};
    if (path.isEmpty() || path.contains(QChar::Null) ||
        stat(PathBytes::encoded(path).constData(), &status) != 0)
        return {};
#ifdef __APPLE__
    const timespec& changed = status.st_mtimespec;
#else
    const timespec& changed = status.st_mtim;
#endif
    constexpr qint64 second = 1'000'000'000;
    return {status.st_dev, status.st_ino, status.st_size, changed.tv_sec * second + changed.tv_nsec};
}

QString FileItem::canonicalPath(const QString& path) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return {};
    char* resolved = realpath(PathBytes::encoded(path).constData(), nullptr);
    if (resolved == nullptr)
        return {};
    QString canonical = PathBytes::decoded(resolved);
    std::free(resolved); // NOLINT(cppcoreguidelines-no-malloc): realpath's contract
    return canonical;
}

QString FileItem::absolutePath(const QString& path) {
    if (path.isEmpty())
        return {};
    return QDir::cleanPath(path.startsWith(u'/') ? path : currentFolder() + u'/' + path);
}

QString FileItem::currentFolder() {
    std::error_code error;
    return PathBytes::decoded(std::filesystem::current_path(error).native());
}

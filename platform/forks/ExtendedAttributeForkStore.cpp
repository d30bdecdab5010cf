#include "platform/forks/ExtendedAttributeForkStore.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "files/PathBytes.h"

#include <sys/xattr.h>

#include <cerrno>
#include <utility>

namespace {

#ifdef Q_OS_MACOS
constexpr char resourceForkName[] = "com.apple.ResourceFork";
constexpr char finderInfoName[] = "com.apple.FinderInfo";
constexpr int noSuchAttribute = ENOATTR;

ssize_t getAttribute(const char* path, const char* name, void* value, std::size_t size) {
    return getxattr(path, name, value, size, 0, 0);
}

int setAttribute(const char* path, const char* name, const void* value, std::size_t size) {
    // setxattr overwrites a resource fork in place: the end of a longer old fork would stay.
    removexattr(path, name, 0);
    return setxattr(path, name, value, size, 0, 0);
}
#else
constexpr char resourceForkName[] = "user.com.apple.ResourceFork";
constexpr char finderInfoName[] = "user.com.apple.FinderInfo";
constexpr int noSuchAttribute = ENODATA;

ssize_t getAttribute(const char* path, const char* name, void* value, std::size_t size) {
    return getxattr(path, name, value, size);
}

int setAttribute(const char* path, const char* name, const void* value, std::size_t size) {
    return setxattr(path, name, value, size, 0);
}
#endif

Error failure(const QString& path, ErrorCode code, int error) {
    return about(path, systemError(error, code));
}

Result<QByteArray> read(const QString& path, const char* name) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return failure(path, ErrorCode::NotAPath, ENOENT);
    const QByteArray file = PathBytes::encoded(path);
    // The value may grow at any time, so asking for its length first would not help. If a value exactly fills
    // the buffer, there may be more: macOS returns as much of a resource fork as fits.
    constexpr qsizetype usual = 2048;
    QByteArray value(usual, Qt::Uninitialized);
    const auto get = [&] {
        return getAttribute(file.constData(), name, value.data(), static_cast<std::size_t>(value.size()));
    };
    ssize_t length = get();
    while (length == value.size() || (length < 0 && errno == ERANGE)) {
        value.resize(2 * value.size());
        length = get();
    }
    if (length < 0 && errno == noSuchAttribute)
        return QByteArray();
    if (length < 0)
        return failure(path, errno == ENOENT ? ErrorCode::NotFound : ErrorCode::NotReadable, errno);
    value.truncate(length);
    return value;
}

Result<Done> write(const QString& path, const char* name, const QByteArray& value) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return failure(path, ErrorCode::NotAPath, ENOENT);
    if (setAttribute(PathBytes::encoded(path).constData(), name, value.constData(),
                     static_cast<std::size_t>(value.size())) != 0)
        return failure(path, errno == ENOENT ? ErrorCode::NotFound : ErrorCode::NotWritable, errno);
    return Done{};
}

} // namespace

Result<QByteArray> ExtendedAttributeForkStore::resourceFork(const QString& path) const {
    return unlessMemoryIsShort([&] { return read(path, resourceForkName); });
}

Result<Done> ExtendedAttributeForkStore::setResourceFork(const QString& path, const QByteArray& fork) {
    return unlessMemoryIsShort([&] { return write(path, resourceForkName, fork); });
}

Result<FinderInfo> ExtendedAttributeForkStore::finderInfo(const QString& path) const {
    return unlessMemoryIsShort([&]() -> Result<FinderInfo> {
        const Result<QByteArray> bytes = read(path, finderInfoName);
        if (!bytes)
            return bytes.error();
        return FinderInfo(*bytes);
    });
}

Result<Done> ExtendedAttributeForkStore::setFinderInfo(const QString& path, const FinderInfo& info) {
    return unlessMemoryIsShort([&] { return write(path, finderInfoName, info.bytes()); });
}

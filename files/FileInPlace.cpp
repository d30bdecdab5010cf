#include "files/FileInPlace.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "files/FileDescriptor.h"
#include "files/PathBytes.h"

#include <fcntl.h>

namespace {

Error cannotWrite(int error) {
    return systemError(error, ErrorCode::NotWritable);
}

Result<Done> written(const QString& path, const QByteArray& bytes) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return Error{ErrorCode::NotAPath, QStringLiteral("not a path")};
    FileDescriptor file(
        open(PathBytes::encoded(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (!file.isOpen())
        return cannotWrite(errno);
    for (qsizetype at = 0; at < bytes.size();) {
        const ssize_t n =
            ::write(file.number(), bytes.constData() + at, static_cast<std::size_t>(bytes.size() - at));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return cannotWrite(n < 0 ? errno : EIO);
        at += n;
    }
    if (const int error = file.close(); error != 0)
        return cannotWrite(error);
    return Done{};
}

} // namespace

Result<Done> FileInPlace::write(const QString& path, const QByteArray& bytes) {
    return unlessMemoryIsShort([&] { return written(path, bytes); });
}

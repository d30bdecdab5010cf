#include "files/RegularFile.h"

#include "files/AtomicFile.h"
#include "files/FileDescriptor.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <optional>

namespace {

Error notRegular() {
    return {ErrorCode::NotReadable, QStringLiteral("Not a regular file")};
}

Error failure(int error) {
    // A socket, or a device that is not there.
    if (error == ENXIO || error == ENODEV)
        return notRegular();
    return {error == ENOENT ? ErrorCode::NotFound : ErrorCode::NotReadable,
            AtomicFile::systemSentence(error)};
}

/// Asks for large pages where much is about to be filled: else most of the time goes into having small ones.
void preferLargePages([[maybe_unused]] QByteArray& buffer) {
#ifdef MADV_HUGEPAGE
    constexpr qsizetype page = 2 << 20;
    char* data = buffer.data();
    // To the first whole page.
    const auto skipped = static_cast<qsizetype>(-reinterpret_cast<std::uintptr_t>(data) % page);
    if (buffer.size() > skipped + page)
        madvise(data + skipped, static_cast<std::size_t>(buffer.size() - skipped), MADV_HUGEPAGE);
#endif
}

/// Reads on until `buffer` has `length` bytes or the file ends. The errno of a failure, 0 without one.
int readUpTo(int descriptor, QByteArray& buffer, qsizetype length) {
    qsizetype at = buffer.size();
    buffer.resize(length);
    preferLargePages(buffer);
    int error = 0;
    while (at < length) {
        const ssize_t n = read(descriptor, buffer.data() + at, static_cast<std::size_t>(length - at));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            error = errno;
        if (n <= 0)
            break;
        at += n;
    }
    buffer.truncate(at);
    return error;
}

} // namespace

Result<QByteArray>
RegularFile::read(const std::string& path, qint64 maximumBytes,
                  const std::function<std::optional<Error>(const QByteArray& start)>& refuses) {
    // Without waiting for a writer, should it be a FIFO.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!file.isOpen())
        return failure(errno);
    struct stat status = {};
    if (fstat(file.number(), &status) != 0)
        return failure(errno);
    if (S_ISDIR(status.st_mode))
        return failure(EISDIR);
    if (!S_ISREG(status.st_mode))
        return notRegular();
    QByteArray bytes;
    constexpr qsizetype start = 64 << 10;
    if (const int error = readUpTo(file.number(), bytes, std::min<qsizetype>(start, status.st_size));
        error != 0)
        return failure(error);
    if (refuses) {
        if (const std::optional<Error> refused = refuses(bytes))
            return *refused;
    }
    if (status.st_size > maximumBytes)
        return Error{ErrorCode::TooLarge,
                     QStringLiteral("the file is larger than %1 MiB").arg(maximumBytes >> 20)};
    // A file that shrinks meanwhile simply ends earlier.
    if (const int error = readUpTo(file.number(), bytes, status.st_size); error != 0)
        return failure(error);
    return bytes;
}

#include "files/RegularFile.h"

#include "base/LongWork.h"
#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "files/FileDescriptor.h"
#include "files/FileTime.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <utility>

namespace {

Error notRegular() {
    return {ErrorCode::NotReadable, QStringLiteral("Not a regular file")};
}

Error cannotRead(int error) {
    // The file is a socket, or a device that is not there.
    if (error == ENXIO || error == ENODEV)
        return notRegular();
    return systemError(error, error == ENOENT ? ErrorCode::NotFound : ErrorCode::NotReadable);
}

/// Asks for large pages if the buffer is large: with small pages, most of the time is spent on mapping them.
void preferLargePages([[maybe_unused]] QByteArray& buffer) {
#ifdef MADV_HUGEPAGE
    constexpr qsizetype page = 2 << 20;
    char* data = buffer.data();
    // Skips to the first whole large page.
    const auto skipped = static_cast<qsizetype>(-reinterpret_cast<std::uintptr_t>(data) % page);
    if (buffer.size() > skipped + page)
        madvise(data + skipped, static_cast<std::size_t>(buffer.size() - skipped), MADV_HUGEPAGE);
#endif
}

/// Reads until `buffer` has `length` bytes or the file ends.
Result<Done> readUpTo(int descriptor, QByteArray& buffer, qsizetype length) {
    constexpr qsizetype piece = 16 << 20;
    qsizetype at = buffer.size();
    buffer.resize(length);
    preferLargePages(buffer);
    while (at < length) {
        LongWork::step();
        const ssize_t n =
            read(descriptor, buffer.data() + at, static_cast<std::size_t>(std::min(length - at, piece)));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return cannotRead(errno);
        if (n == 0)
            break;
        at += n;
    }
    buffer.truncate(at);
    return Done{};
}

bool isSame(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

Result<RegularFile::Part> contents(const std::string& path, qint64 maximumBytes,
                                   const std::function<Result<qint64>(const QByteArray& start)>& lengthOf) {
    // O_NONBLOCK: opening a FIFO does not wait for a writer.
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (!file.isOpen())
        return cannotRead(errno);
    struct stat status = {};
    if (fstat(file.number(), &status) != 0)
        return cannotRead(errno);
    if (S_ISDIR(status.st_mode))
        return cannotRead(EISDIR);
    if (!S_ISREG(status.st_mode))
        return notRegular();
    QByteArray bytes;
    constexpr qsizetype start = 64 << 10;
    if (const Result<Done> done = readUpTo(file.number(), bytes, std::min<qsizetype>(start, status.st_size));
        !done)
        return done.error();
    const Result<qint64> wanted = lengthOf(bytes);
    if (!wanted)
        return wanted.error();
    const qint64 length = std::min<qint64>(*wanted, status.st_size);
    if (length > maximumBytes)
        return Error{ErrorCode::TooLarge,
                     QStringLiteral("the file is larger than %1 MiB").arg(maximumBytes >> 20)};
    if (const Result<Done> done = readUpTo(file.number(), bytes, std::max<qint64>(length, bytes.size()));
        !done)
        return done.error();
    // Bytes from before and after a change may still look like a whole file.
    struct stat after = {};
    if (fstat(file.number(), &after) != 0)
        return cannotRead(errno);
    if (bytes.size() < length || after.st_size != status.st_size ||
        !isSame(modificationTime(after), modificationTime(status)))
        return Error{ErrorCode::NotReadable, QStringLiteral("the file was changed while it was read")};
    bytes.truncate(length);
    return RegularFile::Part{std::move(bytes), status.st_size};
}

} // namespace

Result<QByteArray> RegularFile::read(const std::string& path, qint64 maximumBytes,
                                     const std::function<Result<Done>(const QByteArray& start)>& check) {
    Result<Part> whole = readPart(path, maximumBytes, [&](const QByteArray& start) -> Result<qint64> {
        const Result<Done> allowed = check ? check(start) : Done{};
        return allowed ? Result<qint64>(std::numeric_limits<qint64>::max()) : allowed.error();
    });
    if (!whole)
        return whole.error();
    return std::move(whole->bytes);
}

Result<RegularFile::Part>
RegularFile::readPart(const std::string& path, qint64 maximumBytes,
                      const std::function<Result<qint64>(const QByteArray& start)>& lengthOf) {
    return unlessMemoryIsShort([&] { return contents(path, maximumBytes, lengthOf); });
}

#include "files/StandardInput.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace {

/// Reads until `buffer` has `length` bytes. False where the input ends before.
Result<bool> readUpTo(QByteArray& buffer, qsizetype length) {
    qsizetype at = buffer.size();
    buffer.resize(length);
    while (at < length) {
        const ssize_t n = ::read(STDIN_FILENO, buffer.data() + at, static_cast<std::size_t>(length - at));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return systemError(errno, ErrorCode::NotReadable);
        if (n == 0)
            break;
        at += n;
    }
    buffer.truncate(at);
    return at == length;
}

Result<QByteArray> contents(qint64 maximumBytes,
                            const std::function<bool(const QByteArray& start)>& isWanted) {
    if (isatty(STDIN_FILENO) != 0)
        return Error{ErrorCode::NotReadable,
                     QStringLiteral("it is a terminal; send a file to it, with < or from a pipe")};
    constexpr qsizetype start = 64 << 10;
    QByteArray bytes;
    Result<bool> hasMore = readUpTo(bytes, start);
    if (hasMore && *hasMore && !isWanted(bytes))
        return bytes;
    while (hasMore && *hasMore && bytes.size() <= maximumBytes)
        hasMore = readUpTo(bytes, std::min<qint64>(2 * bytes.size(), maximumBytes + 1));
    if (!hasMore)
        return hasMore.error();
    if (bytes.size() > maximumBytes)
        return Error{ErrorCode::TooLarge, QStringLiteral("it is larger than %1 MiB").arg(maximumBytes >> 20)};
    return bytes;
}

} // namespace

Result<QByteArray> StandardInput::read(qint64 maximumBytes,
                                       const std::function<bool(const QByteArray& start)>& isWanted) {
    return unlessMemoryIsShort([&] { return contents(maximumBytes, isWanted); });
}

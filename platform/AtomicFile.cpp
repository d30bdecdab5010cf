#include "platform/AtomicFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace {

Error writeError(int error) {
    return {ErrorCode::NotWritable, AtomicFile::systemSentence(error)};
}

/// A new file in `folder`, opened for writing; its name goes to `name`. -1 with errno set on failure.
int openTemporary(const QByteArray& folder, QByteArray& name) {
    static std::atomic<unsigned> counter{0};
    constexpr int attempts = 1000;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        // Short and fixed, so that a target of the longest allowed name still has room beside it.
        name = folder + ".tobrimax-" + QByteArray::number(static_cast<qint64>(getpid())) + '-' +
               QByteArray::number(counter.fetch_add(1));
        const int descriptor = open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0 || errno != EEXIST)
            return descriptor;
    }
    errno = EEXIST;
    return -1;
}

/// The name of the file that a link of that name leads to, or the name itself.
QByteArray followed(const QByteArray& name) {
    char* resolved = realpath(name.constData(), nullptr);
    if (resolved == nullptr)
        return name;
    QByteArray target(resolved);
    std::free(resolved); // NOLINT(cppcoreguidelines-no-malloc): realpath's contract
    return target;
}

bool writeAll(int descriptor, const QByteArray& bytes) {
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t n =
            ::write(descriptor, bytes.constData() + written, static_cast<size_t>(bytes.size() - written));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (n == 0)
                errno = EIO;
            return false;
        }
        written += n;
    }
    return true;
}

/// Makes a rename in `folder` last. Not every file system can: the file itself is whole in any case.
void syncFolder(const QByteArray& folder) {
    const int descriptor =
        open(folder.isEmpty() ? "." : folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}

} // namespace

QString AtomicFile::systemSentence(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

Result<Done> AtomicFile::write(const QString& path, const QByteArray& bytes, Durability durability) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return Error{ErrorCode::NotAPath, QStringLiteral("not a path")};
    // The link stays. In bytes throughout: names need not be of any encoding.
    const QByteArray target = followed(QFile::encodeName(path));
    struct stat existing = {};
    if (stat(target.constData(), &existing) == 0) {
        if (S_ISDIR(existing.st_mode))
            return writeError(EISDIR);
        if (!S_ISREG(existing.st_mode))
            return Error{ErrorCode::NotWritable, QStringLiteral("Not a regular file")};
    }
    QByteArray temporary;
    const QByteArray folder = target.left(target.lastIndexOf('/') + 1);
    const int descriptor = openTemporary(folder, temporary);
    if (descriptor < 0)
        return writeError(errno);
    int failure = writeAll(descriptor, bytes) ? 0 : errno;
    if (failure == 0 && durability == Durability::Synced && fsync(descriptor) != 0)
        failure = errno;
    if (close(descriptor) != 0 && failure == 0)
        failure = errno;
    if (failure == 0 && rename(temporary.constData(), target.constData()) != 0)
        failure = errno;
    if (failure == 0) {
        if (durability == Durability::Synced)
            syncFolder(folder);
        return Done{};
    }
    unlink(temporary.constData());
    return writeError(failure);
}

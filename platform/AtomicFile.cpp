#include "platform/AtomicFile.h"

#include "platform/FilePath.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <string>
#include <system_error>

namespace {

Error writeError(int error) {
    return {ErrorCode::NotWritable, AtomicFile::systemSentence(error)};
}

/// A new file beside `path`, opened for writing; its name goes to `name`. -1 with errno set on failure.
int openTemporary(const QString& folder, std::string& name) {
    static std::atomic<unsigned> counter{0};
    for (int attempt = 0; attempt < 1000; ++attempt) {
        // Short and fixed, so that a target of the longest allowed name still has room beside it.
        const QString candidate =
            QStringLiteral(".tobrimax-%1-%2").arg(static_cast<qint64>(getpid())).arg(counter.fetch_add(1));
        name = QFile::encodeName(appendingPathComponent(folder, candidate)).toStdString();
        const int descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0 || errno != EEXIST)
            return descriptor;
    }
    errno = EEXIST;
    return -1;
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

} // namespace

QString AtomicFile::systemSentence(int error) {
    return QString::fromStdString(std::generic_category().message(error));
}

Result<Done> AtomicFile::write(const QString& path, const QByteArray& bytes) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return Error{ErrorCode::NotAPath, QStringLiteral("not a path")};
    // A link to a file is followed: the file that it names is replaced, the link stays.
    QString target = path;
    char* resolved = realpath(QFile::encodeName(path).constData(), nullptr);
    if (resolved != nullptr) {
        target = QFile::decodeName(resolved);
        free(resolved); // NOLINT(cppcoreguidelines-no-malloc): realpath's contract
    }
    struct stat existing = {};
    const QByteArray targetName = QFile::encodeName(target);
    if (stat(targetName.constData(), &existing) == 0) {
        if (S_ISDIR(existing.st_mode))
            return writeError(EISDIR);
        if (!S_ISREG(existing.st_mode))
            return Error{ErrorCode::NotWritable, QStringLiteral("Not a regular file")};
    }
    const qsizetype slash = target.lastIndexOf(u'/');
    const QString folder = slash < 0    ? QStringLiteral(".")
                           : slash == 0 ? QStringLiteral("/")
                                        : target.left(slash);
    std::string temporary;
    const int descriptor = openTemporary(folder, temporary);
    if (descriptor < 0)
        return writeError(errno);
    int failure = writeAll(descriptor, bytes) ? 0 : errno;
    if (close(descriptor) != 0 && failure == 0)
        failure = errno;
    if (failure == 0 && rename(temporary.c_str(), targetName.constData()) != 0)
        failure = errno;
    if (failure == 0)
        return Done{};
    unlink(temporary.c_str());
    return writeError(failure);
}

#include "platform/forks/FileForkStore.h"

#include "files/AtomicFile.h"
#include "files/FileTime.h"
#include "platform/forks/ResourceFork.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace {

/// A text that can name a file.
bool isPath(const QString& path) {
    return !path.isEmpty() && !path.contains(QChar::Null);
}

Error failure(const QString& path, ErrorCode code, const QString& cause) {
    return {code, QStringLiteral("%1: %2").arg(path, cause)};
}

} // namespace

Result<Done> FileForkStore::removeItem(const QString& path) {
    if (!isPath(path))
        return failure(path, ErrorCode::NotAPath, QStringLiteral("not a path"));
    const QFileInfo item(path);
    if (item.isDir() && !item.isSymLink()) {
        if (QDir(path).removeRecursively())
            return Done{};
        return failure(path, ErrorCode::NotWritable, QStringLiteral("the folder could not be removed"));
    }
    QFile file(path);
    if (file.remove())
        return Done{};
    const bool isThere = item.isSymLink() || item.exists();
    return failure(path, isThere ? ErrorCode::NotWritable : ErrorCode::NotFound,
                   isThere ? file.errorString() : AtomicFile::systemSentence(ENOENT));
}

Result<Done> FileForkStore::removeRemains(const QString& /*path*/) {
    return Done{};
}

Result<ForkStore::FileTime> FileForkStore::modificationDate(const QString& path) const {
    struct stat status {};
    if (!isPath(path))
        return failure(path, ErrorCode::NotAPath, QStringLiteral("not a path"));
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return failure(path, errno == ENOENT ? ErrorCode::NotFound : ErrorCode::NotReadable,
                       AtomicFile::systemSentence(errno));
    const timespec time = modificationTime(status);
    return FileTime{time.tv_sec, time.tv_nsec};
}

Result<Done> FileForkStore::setModificationDate(const QString& path, const FileTime& date) {
    timespec times[2]{};
    times[0].tv_nsec = UTIME_OMIT;
    times[1].tv_sec = static_cast<time_t>(date.seconds);
    times[1].tv_nsec = static_cast<long>(date.nanoseconds);
    if (!isPath(path) || utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) != 0)
        return failure(path, ErrorCode::NotWritable, AtomicFile::systemSentence(errno));
    return Done{};
}

Result<ForkStore::Created> FileForkStore::createResourceFork(const QString& path,
                                                             const std::optional<FinderInfo>& info) {
    const QFileInfo item(path);
    const bool wasThere = isPath(path) && (item.exists() || item.isSymLink());
    if (wasThere && (item.isDir() || !item.exists()))
        return Created::WasThere;
    if (!wasThere) {
        if (const Result<Done> removed = removeRemains(path); !removed)
            return removed.error();
        if (const Result<Done> made = AtomicFile::write(path, {}); !made)
            return made.error();
    }
    const Result<QByteArray> before = resourceFork(path);
    if (!before)
        return before.error();
    if (before->isEmpty()) {
        const Result<QByteArray> empty = ResourceFork().data();
        if (const Result<Done> written = setResourceFork(path, *empty); !written)
            return written.error();
    }
    if (!wasThere && info) {
        if (const Result<Done> written = setFinderInfo(path, *info); !written)
            return written.error();
    }
    return wasThere ? Created::WasThere : Created::New;
}

Result<Done> FileForkStore::notifyChanged(const QString& folder) {
    if (!isPath(folder) || !QFileInfo(folder).isDir())
        return failure(folder, ErrorCode::NotFound, AtomicFile::systemSentence(ENOTDIR));
    return Done{};
}

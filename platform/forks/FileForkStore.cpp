#include "platform/forks/FileForkStore.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "files/AtomicFile.h"
#include "files/FileItem.h"
#include "files/FileTime.h"
#include "files/PathBytes.h"
#include "platform/forks/ResourceFork.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace {

/// Whether the text can name a file.
bool isPath(const QString& path) {
    return !path.isEmpty() && !path.contains(QChar::Null);
}

Error notAPath(const QString& path) {
    return about(path, {ErrorCode::NotAPath, QStringLiteral("not a path")});
}

} // namespace

Result<Done> FileForkStore::removeItem(const QString& path) {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        if (!isPath(path))
            return notAPath(path);
        const QByteArray name = PathBytes::encoded(path);
        std::error_code error;
        if (FileItem::isFolder(path) && !FileItem::isLink(path))
            std::filesystem::remove_all(name.constData(), error);
        else if (unlink(name.constData()) != 0)
            error = std::error_code(errno, std::generic_category());
        if (!error)
            return Done{};
        return about(path, systemError(error.value(), error == std::errc::no_such_file_or_directory
                                                          ? ErrorCode::NotFound
                                                          : ErrorCode::NotWritable));
    });
}

Result<Done> FileForkStore::removeRemains(const QString& /*path*/) {
    return Done{};
}

Result<ForkStore::FileTime> FileForkStore::modificationDate(const QString& path) const {
    return unlessMemoryIsShort([&]() -> Result<FileTime> {
        struct stat status {};
        if (!isPath(path))
            return notAPath(path);
        if (stat(PathBytes::encoded(path).constData(), &status) != 0)
            return about(path,
                         systemError(errno, errno == ENOENT ? ErrorCode::NotFound : ErrorCode::NotReadable));
        const timespec time = modificationTime(status);
        return FileTime{time.tv_sec, time.tv_nsec};
    });
}

Result<Done> FileForkStore::setModificationDate(const QString& path, const FileTime& date) {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        timespec times[2]{};
        times[0].tv_nsec = UTIME_OMIT;
        times[1].tv_sec = static_cast<time_t>(date.seconds);
        times[1].tv_nsec = static_cast<long>(date.nanoseconds);
        if (!isPath(path))
            return notAPath(path);
        if (utimensat(AT_FDCWD, PathBytes::encoded(path).constData(), times, 0) != 0)
            return about(path, systemError(errno, ErrorCode::NotWritable));
        return Done{};
    });
}

Result<ForkStore::Created> FileForkStore::createResourceFork(const QString& path,
                                                             const std::optional<FinderInfo>& info) {
    return unlessMemoryIsShort([&]() -> Result<Created> {
        const bool wasThere = FileItem::isThere(path);
        if (wasThere && (FileItem::isFolder(path) || !FileItem::exists(path)))
            return Created::WasThere;
        if (!wasThere) {
            if (const Result<Done> removed = removeRemains(path); !removed)
                return removed.error();
            if (const Result<Done> made = AtomicFile::write(path, {}); !made)
                return about(path, made.error());
        }
        const Result<QByteArray> before = resourceFork(path);
        if (!before)
            return before.error();
        if (before->isEmpty()) {
            const Result<QByteArray> empty = ResourceFork().data();
            if (!empty)
                return empty.error();
            if (const Result<Done> written = setResourceFork(path, *empty); !written)
                return written.error();
        }
        if (!wasThere && info) {
            if (const Result<Done> written = setFinderInfo(path, *info); !written)
                return written.error();
        }
        return wasThere ? Created::WasThere : Created::New;
    });
}

Result<Done> FileForkStore::notifyChanged(const QString& folder) {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        if (!FileItem::isFolder(folder))
            return about(folder, systemError(ENOTDIR, ErrorCode::NotFound));
        return Done{};
    });
}

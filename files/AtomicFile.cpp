#include "files/AtomicFile.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "files/PathBytes.h"
#include "files/TemporaryFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <set>

namespace {

// Writing into a folder needs no permission to read the folder.
#if defined(O_PATH)
constexpr int searchOnly = O_PATH;
#elif defined(O_SEARCH)
constexpr int searchOnly = O_SEARCH;
#else
constexpr int searchOnly = O_RDONLY;
#endif

constexpr mode_t permissions = 0777;

Error writeError(int error) {
    return systemError(error, ErrorCode::NotWritable);
}

/// The file to be written: its path, and the mode of an existing file.
struct Target {
    QByteArray path; ///< bytes, because file names need not be in any encoding
    std::optional<mode_t> mode{};

    QByteArray folder() const { return path.left(path.lastIndexOf('/') + 1); }
    QByteArray name() const { return path.mid(path.lastIndexOf('/') + 1); }
};

/// The file that a write to `path` will replace or create.
Result<Target> targetOf(const QByteArray& path) {
    struct stat status = {};
    if (stat(path.constData(), &status) != 0) {
        // A link that leads nowhere is replaced by a new file.
        if (errno == ENOENT)
            return Target{path};
        return writeError(errno);
    }
    if (S_ISDIR(status.st_mode))
        return writeError(EISDIR);
    if (!S_ISREG(status.st_mode))
        return Error{ErrorCode::NotWritable, QStringLiteral("Not a regular file")};
    Target target{path, status.st_mode & permissions};
    if (lstat(path.constData(), &status) == 0 && S_ISLNK(status.st_mode)) {
        char* resolved = realpath(path.constData(), nullptr);
        if (resolved == nullptr)
            return writeError(errno);
        target.path = resolved;
        std::free(resolved); // NOLINT(cppcoreguidelines-no-malloc): realpath's contract
    }
    return target;
}

/// The same for a path as text.
Result<Target> checkedTarget(const QString& path) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return Error{ErrorCode::NotAPath, QStringLiteral("not a path")};
    return targetOf(PathBytes::encoded(path));
}

/// Removes the temporaries that killed processes left in a folder. A folder may hold very many files, so it
/// is searched only before this run's first write into it.
void removeAbandonedOnce(const FileDescriptor& folder, const QByteArray& name) {
    static std::set<QByteArray> searched;
    if (searched.insert(name).second)
        TemporaryFile::removeAbandoned(folder);
}

/// Syncs a folder to the disk, so that renames in it last. Returns 0 or the errno of a failure. A file system
/// that cannot sync folders is not a failure.
int syncFolder(const FileDescriptor& folder) {
    if (!folder.isOpen())
        return 0;
    const int failure = folder.sync();
    return failure == EINVAL || failure == ENOTSUP || failure == EBADF ? 0 : failure;
}

/// Puts a new file in the target's place. Returns 0 or the errno of a failure.
int replace(const FileDescriptor& folder, const Target& target, const QByteArray& bytes,
            const AtomicFile::Options& options) {
    const bool isSynced = options.durability == AtomicFile::Durability::Synced;
    FileDescriptor synced;
    if (isSynced) {
        synced = FileDescriptor(openat(folder.number(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!synced.isOpen() && errno != EACCES)
            return errno;
    }
    const std::optional<mode_t> mode = target.mode ? target.mode : options.newMode;
    TemporaryFile temporary(folder);
    int failure = temporary.create();
    // The mode is set before the bytes are written, so that only permitted users can read them.
    if (failure == 0 && mode)
        failure = temporary.setMode(*mode);
    if (failure == 0)
        failure = temporary.write(bytes);
    if (failure == 0 && isSynced)
        failure = temporary.sync();
    if (failure == 0)
        failure = temporary.close();
    if (failure == 0)
        failure = temporary.moveTo(target.name());
    return failure == 0 ? syncFolder(synced) : failure;
}

} // namespace

Result<Done> AtomicFile::check(const QString& path) {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        const Result<Target> target = checkedTarget(path);
        if (!target)
            return target.error();
        const QByteArray folder = target->folder();
        if (access(folder.isEmpty() ? "." : folder.constData(), W_OK | X_OK) != 0)
            return writeError(errno);
        return Done{};
    });
}

Result<Done> AtomicFile::write(const QString& path, const QByteArray& bytes, const Options& options) {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        const Result<Target> target = checkedTarget(path);
        if (!target)
            return target.error();
        const QByteArray folderName = target->folder();
        const FileDescriptor folder(
            open(folderName.isEmpty() ? "." : folderName.constData(), searchOnly | O_DIRECTORY | O_CLOEXEC));
        if (!folder.isOpen())
            return writeError(errno);
        removeAbandonedOnce(folder, folderName);
        if (const int failure = replace(folder, *target, bytes, options); failure != 0)
            return writeError(failure);
        return Done{};
    });
}

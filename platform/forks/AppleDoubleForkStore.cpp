#include "platform/forks/AppleDoubleForkStore.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "files/AtomicFile.h"
#include "files/FileItem.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"
#include "files/RegularFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <limits>

namespace {

/// What the store keeps for an existing item; empty if the item has no AppleDouble file.
Result<AppleDouble> contentsOf(const QString& path, const QString& sidecar) {
    if (!FileItem::exists(path))
        return about(path, systemError(ENOENT, ErrorCode::NotFound));
    if (!FileItem::isThere(sidecar))
        return AppleDouble();
    // macOS itself can keep less than 4 GiB in such a file.
    constexpr qint64 largest = std::numeric_limits<quint32>::max();
    const Result<QByteArray> bytes = RegularFile::read(PathBytes::encoded(sidecar).toStdString(), largest);
    if (!bytes)
        return about(sidecar, bytes.error());
    Result<AppleDouble> parsed = AppleDouble::parse(*bytes);
    if (!parsed)
        return about(sidecar, parsed.error());
    return parsed;
}

/// The path of an item with the links to its folder resolved. If the item itself is a link, it is not
/// resolved.
QString ownPath(const QString& path) {
    const QString absolute =
        path.startsWith(u'/') ? path : appendingPathComponent(FileItem::currentFolder(), path);
    const QString folder = FileItem::canonicalPath(deletingLastPathComponent(absolute));
    return folder.isEmpty() ? absolute : appendingPathComponent(folder, lastPathComponent(absolute));
}

QString beside(const QString& path) {
    return appendingPathComponent(deletingLastPathComponent(path),
                                  QLatin1String("._") + lastPathComponent(path));
}

/// Makes or replaces an AppleDouble file.
Result<Done> writeSidecar(const QString& sidecar, const QString& item, const AppleDouble& contents) {
    constexpr mode_t readAndWrite = 0666;
    AtomicFile::Options options;
    struct stat status {};
    if (stat(PathBytes::encoded(item).constData(), &status) == 0)
        options.newMode = status.st_mode & readAndWrite;
    const Result<Done> written = AtomicFile::write(sidecar, contents.data(), options);
    return written ? written : about(sidecar, written.error());
}

} // namespace

QString AppleDoubleForkStore::sidecarPath(const QString& path) {
    // The file system resolves links first: in "link/..", the ".." leads to the parent of the link's target.
    const QString canonical = FileItem::canonicalPath(path);
    return beside(canonical.isEmpty() ? ownPath(path) : canonical);
}

Result<Done> AppleDoubleForkStore::removeItem(const QString& path) {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        // For a link, removes the link's own AppleDouble file. The file that it leads to keeps its own.
        const QString own = ownPath(path);
        if (const Result<Done> removed = FileForkStore::removeItem(path); !removed)
            return removed.error();
        return removeRemains(own);
    });
}

Result<Done> AppleDoubleForkStore::removeRemains(const QString& path) {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        const QString sidecar = beside(ownPath(path));
        if (!FileItem::isThere(sidecar))
            return Done{};
        // A folder of that name belongs to the user and stays, with all that is in it.
        if (FileItem::isFolder(sidecar) && !FileItem::isLink(sidecar))
            return about(sidecar, systemError(EISDIR, ErrorCode::NotWritable));
        return FileForkStore::removeItem(sidecar);
    });
}

Result<QByteArray> AppleDoubleForkStore::resourceFork(const QString& path) const {
    return unlessMemoryIsShort([&]() -> Result<QByteArray> {
        const Result<AppleDouble> contents = contentsOf(path, sidecarPath(path));
        if (!contents)
            return contents.error();
        return contents->resourceFork();
    });
}

Result<Done> AppleDoubleForkStore::setResourceFork(const QString& path, const QByteArray& fork) {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        const QString sidecar = sidecarPath(path);
        Result<AppleDouble> contents = contentsOf(path, sidecar);
        if (!contents)
            return contents.error();
        contents->setResourceFork(fork);
        return writeSidecar(sidecar, path, *contents);
    });
}

Result<FinderInfo> AppleDoubleForkStore::finderInfo(const QString& path) const {
    return unlessMemoryIsShort([&]() -> Result<FinderInfo> {
        const Result<AppleDouble> contents = contentsOf(path, sidecarPath(path));
        if (!contents)
            return contents.error();
        return contents->finderInfo();
    });
}

Result<Done> AppleDoubleForkStore::setFinderInfo(const QString& path, const FinderInfo& info) {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        const QString sidecar = sidecarPath(path);
        Result<AppleDouble> contents = contentsOf(path, sidecar);
        if (!contents)
            return contents.error();
        // If nothing changes, no AppleDouble file is made.
        if (contents->finderInfo() == info)
            return Done{};
        contents->setFinderInfo(info);
        return writeSidecar(sidecar, path, *contents);
    });
}

#include "platform/fork/AppleDoubleForkStore.h"

#include "platform/AtomicFile.h"
#include "platform/RegularFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <limits>

namespace {

Error inFile(const QString& path, const Error& error) {
    return {error.code, QStringLiteral("%1: %2").arg(path, error.sentence)};
}

/// What the store has of an item, which must exist; nothing of one without an AppleDouble file.
Result<AppleDouble> contentsOf(const QString& path, const QString& sidecar) {
    if (!QFileInfo::exists(path))
        return Error{ErrorCode::NotFound,
                     QStringLiteral("%1: %2").arg(path, AtomicFile::systemSentence(ENOENT))};
    const QFileInfo info(sidecar);
    if (!info.exists() && !info.isSymLink())
        return AppleDouble();
    // What macOS itself can keep in such a file is shorter than 4 GiB.
    constexpr qint64 largest = std::numeric_limits<quint32>::max();
    const Result<QByteArray> bytes = RegularFile::read(QFile::encodeName(sidecar).toStdString(), largest);
    if (!bytes)
        return inFile(sidecar, bytes.error());
    Result<AppleDouble> parsed = AppleDouble::parse(*bytes);
    if (!parsed)
        return inFile(sidecar, parsed.error());
    return parsed;
}

} // namespace

QString AppleDoubleForkStore::sidecarPath(const QString& path) {
    const QString absolute = QDir::cleanPath(QDir::current().absoluteFilePath(path));
    const qsizetype slash = absolute.lastIndexOf(u'/');
    return absolute.left(slash + 1) + QLatin1String("._") + absolute.mid(slash + 1);
}

Result<Done> AppleDoubleForkStore::removeItem(const QString& path) {
    if (const Result<Done> removed = FileForkStore::removeItem(path); !removed)
        return removed.error();
    const QString sidecar = sidecarPath(path);
    const QFileInfo info(sidecar);
    return info.exists() || info.isSymLink() ? FileForkStore::removeItem(sidecar) : Result<Done>(Done{});
}

Result<QByteArray> AppleDoubleForkStore::resourceFork(const QString& path) const {
    const Result<AppleDouble> contents = contentsOf(path, sidecarPath(path));
    if (!contents)
        return contents.error();
    return contents->resourceFork();
}

Result<Done> AppleDoubleForkStore::setResourceFork(const QString& path, const QByteArray& fork) {
    const QString sidecar = sidecarPath(path);
    Result<AppleDouble> contents = contentsOf(path, sidecar);
    if (!contents)
        return contents.error();
    contents->setResourceFork(fork);
    return AtomicFile::write(sidecar, contents->data());
}

Result<FinderInfo> AppleDoubleForkStore::finderInfo(const QString& path) const {
    const Result<AppleDouble> contents = contentsOf(path, sidecarPath(path));
    if (!contents)
        return contents.error();
    return contents->finderInfo();
}

Result<Done> AppleDoubleForkStore::setFinderInfo(const QString& path, const FinderInfo& info) {
    const QString sidecar = sidecarPath(path);
    Result<AppleDouble> contents = contentsOf(path, sidecar);
    if (!contents)
        return contents.error();
    contents->setFinderInfo(info);
    return AtomicFile::write(sidecar, contents->data());
}

#include "cli/generate/PlannedPlace.h"

#include "files/AtomicFile.h"
#include "files/FileItem.h"
#include "files/FilePath.h"
#include "files/Folder.h"

Result<Done> PlannedPlace::makeFolder(const QString& path) {
    if (m_folders.contains(path) || FileItem::isFolder(path))
        return Done{};
    Result<Done> checked = Folder::check(path);
    if (checked)
        m_folders.insert(path);
    return checked;
}

Result<Done> PlannedPlace::write(const QString& path, const QByteArray& /*bytes*/) {
    const QString folder = deletingLastPathComponent(path);
    // The icons' folder also makes the one above it, which holds the container.
    for (const QString& made : m_folders) {
        if (made == folder || made.startsWith(folder + u'/'))
            return Done{};
    }
    return AtomicFile::check(path);
}

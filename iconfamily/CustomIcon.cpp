#include "iconfamily/CustomIcon.h"

#include "base/ShortMemory.h"
#include "base/SystemError.h"
#include "files/FileItem.h"
#include "files/FilePath.h"
#include "iconfamily/CarbonFSRefCreation.h"
#include "iconfamily/IconFamily.h"
#include "platform/forks/CurrentForkStore.h"
#include "platform/forks/ResourceFile.h"

#include <cerrno>

namespace {

using CarbonFSRefCreation::reference;

constexpr FourCharCode familyResource("icns");
constexpr qint16 customIconNumber = -16455;

/// The elements that old systems show, in the order in which they are added.
constexpr FourCharCode compatibilityTypes[] = {"icl8", "ICN#", "ics8", "ics#"};

/// The file in a folder that holds the folder's icon.
const QString iconFileName = QStringLiteral("Icon\r");

/// The store in use, if it can keep forks.
Result<ForkStore*> availableStore() {
    ForkStore& store = currentForkStore();
    if (!store.isAvailable())
        return Error{ErrorCode::Unsupported, QStringLiteral("files have no resource forks on this system")};
    return &store;
}

/// The path of an item that exists.
Result<QString> existing(const QString& path) {
    const Result<FSRef> item = reference(path, false);
    if (!item)
        return about(path, item.error());
    return item->path;
}

/// Changes the Finder flags of an item.
template <typename Change>
Result<Done> changeFlags(ForkStore& store, const QString& path, Change change) {
    Result<FinderInfo> info = store.finderInfo(path);
    if (!info)
        return info.error();
    info->setFlags(static_cast<quint16>(change(info->flags())));
    return store.setFinderInfo(path, *info);
}

Result<Done> markCustomIcon(ForkStore& store, const QString& path) {
    return changeFlags(store, path, [](quint16 flags) {
        return (flags & ~(FinderInfo::hasCustomIcon | FinderInfo::hasBeenInited)) | FinderInfo::hasCustomIcon;
    });
}

Result<Done> unmarkCustomIcon(ForkStore& store, const QString& path) {
    return changeFlags(store, path, [](quint16 flags) {
        return flags & ~(FinderInfo::hasCustomIcon | FinderInfo::hasBeenInited);
    });
}

/// Removes the icon from the item's fork, if there is one.
Result<Done> removeIcon(ResourceFork& fork, const QString& path) {
    if (fork.isReadOnly())
        return about(path, {ErrorCode::NotWritable, QStringLiteral("its resource fork is read-only")});
    const Resource* icon = fork.resource(familyResource, customIconNumber);
    if (icon != nullptr && (icon->attributes & Resource::isProtected) != 0)
        return about(path, {ErrorCode::NotWritable, QStringLiteral("its icon is protected")});
    fork.removeResource(familyResource, customIconNumber);
    return Done{};
}

/// Adds the family to the item's resource fork.
Result<Done> addToFork(const IconFamily& family, const QString& path, bool withCompatibility) {
    const Result<std::unique_ptr<ResourceFile>> file = ResourceFile::open(path);
    if (!file)
        return file.error();
    ResourceFork& fork = (*file)->fork();
    if (Result<Done> removed = removeIcon(fork, path); !removed)
        return removed;
    Result<Done> added = fork.addResource({familyResource, customIconNumber, QByteArray(), 0, family.data()});
    if (!added)
        return added;
    if (withCompatibility) {
        for (const FourCharCode type : compatibilityTypes) {
            // A missing element is skipped.
            Result<Done> done = family.addElement(type, customIconNumber);
            if (!done && done.error().code == ErrorCode::OutOfMemory)
                return done;
        }
    }
    return (*file)->close();
}

/// The folder of a path's item. A relative path starts at the current folder.
QString folderOf(const QString& path) {
    QString folder = deletingLastPathComponent(path);
    if (path.startsWith(u'/'))
        return folder;
    return folder.isEmpty() ? FileItem::currentFolder()
                            : appendingPathComponent(FileItem::currentFolder(), folder);
}

/// The path of the file that gets the icon. A link is followed, a missing file is made, and an empty fork is
/// added if there is none.
Result<QString> fileWithFork(ForkStore& store, const QString& path, const QString& parent) {
    const Result<FSRef> found = reference(path, false);
    const QString file = found ? found->path : appendingPathComponent(parent, lastPathComponent(path));
    const Result<ForkStore::Created> created = store.createResourceFork(file, std::nullopt);
    if (!created)
        return created.error();
    return *created == ForkStore::Created::WasThere ? existing(path) : file;
}

Result<Done> setOnFile(ForkStore& store, const IconFamily& family, const QString& path,
                       bool withCompatibility, const Result<ForkStore::FileTime>& date) {
    const Result<FSRef> parent = reference(folderOf(path), false);
    if (!parent)
        return about(path, parent.error());
    const Result<QString> file = fileWithFork(store, path, parent->path);
    if (!file)
        return file.error();
    if (Result<Done> added = addToFork(family, *file, withCompatibility); !added)
        return added;
    if (Result<Done> marked = markCustomIcon(store, *file); !marked)
        return marked;
    if (date)
        static_cast<void>(store.setModificationDate(*file, *date));
    return store.notifyChanged(parent->path);
}

/// The path of a folder that exists.
Result<QString> existingFolder(const QString& path) {
    Result<QString> folder = existing(path);
    if (folder && !FileItem::isFolder(*folder))
        return about(path, systemError(ENOTDIR, ErrorCode::NotWritable));
    return folder;
}

/// Removes a folder's icon file, if it has one.
Result<Done> removeIconFile(ForkStore& store, const QString& iconPath) {
    return FileItem::exists(iconPath) ? store.removeItem(iconPath) : Done{};
}

/// Makes the icon file and marks the folder.
Result<Done> setOnFolder(ForkStore& store, const IconFamily& family, const QString& folder,
                         bool withCompatibility) {
    const QString iconPath = appendingPathComponent(folder, iconFileName);
    if (Result<Done> removed = store.removeRemains(iconPath); !removed)
        return removed;
    const Result<FSRef> icon = reference(iconPath, true);
    if (!icon)
        return about(iconPath, icon.error());
    Result<FinderInfo> info = store.finderInfo(icon->path);
    if (!info)
        return info.error();
    info->setType("icon");
    info->setCreator("MACS");
    info->setFlags(FinderInfo::isInvisible);
    if (Result<Done> set = store.setFinderInfo(icon->path, *info); !set)
        return set;
    // `reference` has made the file, so Created::WasThere is the usual answer here and not an error.
    if (const Result<ForkStore::Created> created = store.createResourceFork(icon->path, *info); !created)
        return created.error();
    if (Result<Done> added = addToFork(family, icon->path, withCompatibility); !added)
        return added;
    if (Result<Done> marked = markCustomIcon(store, folder); !marked)
        return marked;
    return store.notifyChanged(folder);
}

Result<Done> removeFromFile(ForkStore& store, const QString& path) {
    const Result<QString> item = existing(path);
    if (!item)
        return item.error();
    const Result<std::unique_ptr<ResourceFile>> file = ResourceFile::open(*item);
    if (!file)
        return file.error();
    if (Result<Done> removed = removeIcon((*file)->fork(), *item); !removed)
        return removed;
    if (Result<Done> closed = (*file)->close(); !closed)
        return closed;
    if (Result<Done> unmarked = unmarkCustomIcon(store, *item); !unmarked)
        return unmarked;
    return store.notifyChanged(deletingLastPathComponent(*item));
}

/// A missing folder has no mark to remove.
Result<Done> unmarkFolder(ForkStore& store, const QString& path) {
    const Result<FSRef> folder = reference(path, false);
    if (!folder)
        return folder.error().code == ErrorCode::OutOfMemory ? Result<Done>(folder.error()) : Done{};
    if (Result<Done> unmarked = unmarkCustomIcon(store, folder->path); !unmarked)
        return unmarked;
    return store.notifyChanged(folder->path);
}

} // namespace

CustomIcon::Outcome CustomIcon::setOnFile(const IconFamily& family, const QString& path,
                                          bool withCompatibility) {
    const Result<ForkStore*> store = availableStore();
    if (!store)
        return {store.error()};
    // A missing file has no date; that does not end the operation.
    const Result<ForkStore::FileTime> date = (*store)->modificationDate(path);
    return {unlessMemoryIsShort([&] { return ::setOnFile(**store, family, path, withCompatibility, date); }),
            date ? Result<Done>(Done{}) : date.error()};
}

CustomIcon::Outcome CustomIcon::setOnFolder(const IconFamily& family, const QString& path,
                                            bool withCompatibility) {
    const Result<ForkStore*> store = availableStore();
    if (!store)
        return {store.error()};
    const Result<QString> folder = unlessMemoryIsShort([&] { return existingFolder(path); });
    if (!folder)
        return {folder.error()};
    const Result<Done> removed = unlessMemoryIsShort(
        [&] { return removeIconFile(**store, appendingPathComponent(*folder, iconFileName)); });
    if (!removed)
        return {removed, removed};
    return {unlessMemoryIsShort([&] { return ::setOnFolder(**store, family, *folder, withCompatibility); })};
}

CustomIcon::Outcome CustomIcon::removeFromFile(const QString& path) {
    const Result<ForkStore*> store = availableStore();
    if (!store)
        return {store.error()};
    return {unlessMemoryIsShort([&] { return ::removeFromFile(**store, path); })};
}

Result<Done> CustomIcon::removeCompatibility(const QString& path) {
    return ResourceFile::removeResources(path, compatibilityTypes, customIconNumber);
}

CustomIcon::Outcome CustomIcon::removeFromFolder(const QString& path) {
    const Result<ForkStore*> store = availableStore();
    if (!store)
        return {store.error()};
    if (const Result<Done> unmarked = unlessMemoryIsShort([&] { return unmarkFolder(**store, path); });
        !unmarked)
        return {unmarked};
    const Result<Done> removed =
        unlessMemoryIsShort([&] { return (*store)->removeItem(appendingPathComponent(path, iconFileName)); });
    return {removed, removed};
}

// Icon families as the custom icons of files and folders.
#include "base/ShortMemory.h"
#include "files/FilePath.h"
#include "iconfamily/CarbonFSRefCreation.h"
#include "iconfamily/IconFamily.h"
#include "platform/forks/CurrentForkStore.h"
#include "platform/forks/ResourceFile.h"

#include <QDir>
#include <QFileInfo>

#include <optional>

namespace {

using CarbonFSRefCreation::getFSRef;

constexpr FourCharCode familyResource("icns");
constexpr qint16 customIconNumber = -16455;

/// What shows the icon where only the elements of old systems are read, in this order.
constexpr FourCharCode compatibilityTypes[] = {"icl8", "ICN#", "ics8", "ics#"};

/// The file in a folder that holds the folder's icon.
const QString iconFileName = QStringLiteral("Icon\r");

/// Changes the Finder flags of an item; whether that succeeded.
template <typename Change>
bool changeFlags(const QString& path, Change change) {
    ForkStore& store = currentForkStore();
    Result<FinderInfo> info = store.finderInfo(path);
    if (!info)
        return false;
    info->setFlags(static_cast<quint16>(change(info->flags())));
    return store.setFinderInfo(path, *info).operator bool();
}

bool markCustomIcon(const QString& path) {
    return changeFlags(path, [](quint16 flags) {
        return (flags & ~(FinderInfo::hasCustomIcon | FinderInfo::hasBeenInited)) | FinderInfo::hasCustomIcon;
    });
}

bool unmarkCustomIcon(const QString& path) {
    return changeFlags(
        path, [](quint16 flags) { return flags & ~(FinderInfo::hasCustomIcon | FinderInfo::hasBeenInited); });
}

/// Fills `error`, where there is one, from a step of the file manager; whether the step succeeded.
template <typename T>
bool tell(const Result<T>& result, Error* error) {
    if (!result && error != nullptr)
        *error = result.error();
    return result.operator bool();
}

/// Takes the icon out of a fork, if it has one; false where it may not be.
bool removeIcon(ResourceFork& fork) {
    const Resource* icon = fork.resource(familyResource, customIconNumber);
    if (fork.isReadOnly() || (icon != nullptr && (icon->attributes & Resource::isProtected) != 0))
        return false;
    fork.removeResource(familyResource, customIconNumber);
    return true;
}

/// Puts the family into the resource fork of that item.
bool addToFork(const IconFamily& family, const QString& path, bool withCompatibility) {
    const Result<std::unique_ptr<ResourceFile>> file = ResourceFile::open(path);
    if (!file)
        return false;
    ResourceFork& fork = (*file)->fork();
    if (!removeIcon(fork))
        return false;
    fork.addResource({familyResource, customIconNumber, QByteArray(), 0, family.data()});
    if (withCompatibility) {
        for (const FourCharCode type : compatibilityTypes)
            family.addResourceType(type, customIconNumber);
    }
    return (*file)->close().operator bool();
}

bool setOnFile(const IconFamily& family, const QString& path, bool withCompatibility, Error* error) {
    ForkStore& store = currentForkStore();
    if (!store.isAvailable())
        return false;
    // A file that is not there yet has none; that is told, and no obstacle.
    const Result<ForkStore::FileTime> date = store.modificationDate(path);
    tell(date, error);
    QString folder = deletingLastPathComponent(path);
    if (!path.startsWith(u'/'))
        folder = folder.isEmpty() ? QDir::currentPath() : appendingPathComponent(QDir::currentPath(), folder);
    FSRef parent;
    if (!getFSRef(folder, parent, false))
        return false;
    // A link leads to the file that gets the icon.
    FSRef file;
    if (!getFSRef(path, file, false))
        file.path = appendingPathComponent(parent.path, lastPathComponent(path));
    const Result<ForkStore::Created> created = store.createResourceFork(file.path, std::nullopt);
    if (!created || (*created == ForkStore::Created::WasThere && !getFSRef(path, file, false)))
        return false;
    if (!addToFork(family, file.path, withCompatibility) || !markCustomIcon(file.path))
        return false;
    if (date)
        static_cast<void>(store.setModificationDate(file.path, *date));
    return store.notifyChanged(parent.path).operator bool();
}

bool setOnFolder(const IconFamily& family, const QString& path, bool withCompatibility, Error* error) {
    ForkStore& store = currentForkStore();
    FSRef folder;
    if (!store.isAvailable() || !QFileInfo(path).isDir() || !getFSRef(path, folder, false))
        return false;
    const QString iconPath = appendingPathComponent(folder.path, iconFileName);
    if (QFileInfo::exists(iconPath) && !tell(store.removeItem(iconPath), error))
        return false;
    FSRef icon;
    if (!store.removeRemains(iconPath) || !getFSRef(iconPath, icon, true))
        return false;
    Result<FinderInfo> info = store.finderInfo(icon.path);
    if (!info)
        return false;
    info->setType("icon");
    info->setCreator("MACS");
    info->setFlags(FinderInfo::isInvisible);
    // The file is there: that its fork can't be the first thing made of it is expected.
    if (!store.setFinderInfo(icon.path, *info) || !store.createResourceFork(icon.path, *info))
        return false;
    return addToFork(family, icon.path, withCompatibility) && markCustomIcon(folder.path) &&
           store.notifyChanged(folder.path);
}

bool removeFromFile(const QString& path) {
    ForkStore& store = currentForkStore();
    FSRef item;
    if (!store.isAvailable() || !getFSRef(path, item, false))
        return false;
    const Result<std::unique_ptr<ResourceFile>> file = ResourceFile::open(item.path);
    if (!file)
        return false;
    if (!removeIcon((*file)->fork()) || !(*file)->close() || !unmarkCustomIcon(item.path))
        return false;
    return store.notifyChanged(deletingLastPathComponent(item.path)).operator bool();
}

bool removeFromFolder(const QString& path, Error* error) {
    ForkStore& store = currentForkStore();
    if (!store.isAvailable())
        return false;
    FSRef folder;
    if (getFSRef(path, folder, false) &&
        (!unmarkCustomIcon(folder.path) || !store.notifyChanged(folder.path)))
        return false;
    return tell(store.removeItem(appendingPathComponent(path, iconFileName)), error);
}

} // namespace

bool IconFamily::setAsCustomIconForFile(const QString& path) const {
    return setAsCustomIconForFile(path, false, nullptr);
}

bool IconFamily::setAsCustomIconForFile(const QString& path, bool /*withCompatibility*/) const {
    return setAsCustomIconForFile(path, false, nullptr);
}

bool IconFamily::setAsCustomIconForFile(const QString& path, bool withCompatibility, Error* error) const {
    return unlessMemoryIsShort([&] { return setOnFile(*this, path, withCompatibility, error); });
}

bool IconFamily::setAsCustomIconForDirectory(const QString& path) const {
    return setAsCustomIconForDirectory(path, false, nullptr);
}

bool IconFamily::setAsCustomIconForDirectory(const QString& path, bool /*withCompatibility*/) const {
    return setAsCustomIconForDirectory(path, false, nullptr);
}

bool IconFamily::setAsCustomIconForDirectory(const QString& path, bool withCompatibility,
                                             Error* error) const {
    return unlessMemoryIsShort([&] { return setOnFolder(*this, path, withCompatibility, error); });
}

bool IconFamily::removeCustomIconFromFile(const QString& path) {
    return unlessMemoryIsShort([&] { return removeFromFile(path); });
}

bool IconFamily::removeCustomIconFromDirectory(const QString& path, Error* error) {
    return unlessMemoryIsShort([&] { return removeFromFolder(path, error); });
}

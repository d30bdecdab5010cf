#include "platform/forks/ResourceFile.h"

#include "base/ShortMemory.h"
#include "files/FileItem.h"
#include "platform/forks/CurrentForkStore.h"

#include <algorithm>
#include <vector>

namespace {

/// The open files; the last one is the current one.
std::vector<ResourceFile*>& openFiles() {
    static std::vector<ResourceFile*> files;
    return files;
}

} // namespace

ResourceFile::ResourceFile(ForkStore& store, QString path, ResourceFork fork)
    : m_store(store), m_path(std::move(path)), m_fork(std::move(fork)), m_stored(m_fork) {
    openFiles().push_back(this);
}

ResourceFile::~ResourceFile() {
    leave();
}

Result<std::unique_ptr<ResourceFile>> ResourceFile::open(const QString& path) {
    return unlessMemoryIsShort([&]() -> Result<std::unique_ptr<ResourceFile>> {
        ForkStore& store = currentForkStore();
        // A folder has no fork, but its AppleDouble file may hold one.
        const bool isFolder = FileItem::isFolder(path);
        const Result<QByteArray> bytes = isFolder ? QByteArray() : store.resourceFork(path);
        if (!bytes)
            return bytes.error();
        if (bytes->isEmpty())
            return Error{ErrorCode::NotFound, QStringLiteral("%1: it has no resource fork").arg(path)};
        Result<ResourceFork> fork = ResourceFork::parse(*bytes);
        if (!fork)
            return about(path, fork.error());
        // std::make_unique cannot call the private constructor.
        return std::unique_ptr<ResourceFile>(new ResourceFile(store, path, std::move(*fork)));
    });
}

Result<Done> ResourceFile::removeResources(const QString& path, std::span<const FourCharCode> types,
                                           qint16 number) {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        ForkStore& store = currentForkStore();
        const Result<ForkStore::FileTime> date = store.modificationDate(path);
        const Result<std::unique_ptr<ResourceFile>> file = open(path);
        if (!file)
            return file.error().code == ErrorCode::NotFound ? Result<Done>(Done{}) : file.error();
        ResourceFork& fork = (*file)->fork();
        const auto isMeant = [&](const Resource& resource) {
            return resource.number == number && std::ranges::find(types, resource.type) != types.end();
        };
        const auto isProtected = [&](const Resource& resource) {
            return isMeant(resource) && (resource.attributes & Resource::isProtected) != 0;
        };
        if (std::ranges::none_of(fork.resources(), isMeant))
            return Done{};
        if (fork.isReadOnly())
            return about(path, {ErrorCode::NotWritable, QStringLiteral("its resource fork is read-only")});
        if (std::ranges::any_of(fork.resources(), isProtected))
            return about(path, {ErrorCode::NotWritable, QStringLiteral("a part of its icon is protected")});
        fork.removeResources(isMeant);
        if (Result<Done> closed = (*file)->close(); !closed)
            return closed;
        // Only the file's owner can set the date. In most stores the write did not change it anyway.
        if (date)
            static_cast<void>(store.setModificationDate(path, *date));
        return Done{};
    });
}

ResourceFile* ResourceFile::current() {
    return openFiles().empty() ? nullptr : openFiles().back();
}

Result<Done> ResourceFile::close() {
    return unlessMemoryIsShort([&]() -> Result<Done> {
        leave();
        if (m_fork == m_stored)
            return Done{};
        const Result<QByteArray> bytes = m_fork.data();
        if (!bytes)
            return bytes.error();
        Result<Done> written = m_store.setResourceFork(m_path, *bytes);
        if (written)
            m_stored = m_fork;
        return written;
    });
}

void ResourceFile::leave() {
    std::erase(openFiles(), this);
}

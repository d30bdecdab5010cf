#include "platform/forks/ResourceFile.h"

#include "base/ShortMemory.h"
#include "platform/forks/CurrentForkStore.h"

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
        const Result<QByteArray> bytes = store.resourceFork(path);
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

#pragma once

#include "platform/forks/ForkStore.h"
#include "platform/forks/ResourceFork.h"

#include <memory>

/// The resource fork of an item, open for reading and writing, in the store that was in use when it was
/// opened. The one that was opened last and is still open is the current one. One thread at a time.
class ResourceFile {
  public:
    /// Opens the item's fork and makes it the current one. An error where the item has none, or a damaged
    /// one.
    static Result<std::unique_ptr<ResourceFile>> open(const QString& path);

    /// Null where none is open.
    static ResourceFile* current();

    /// Closes it; changes that `close` did not write are lost.
    ~ResourceFile();
    ResourceFile(const ResourceFile&) = delete;
    ResourceFile& operator=(const ResourceFile&) = delete;

    ResourceFork& fork() { return m_fork; }

    /// Writes the fork whole, where it was changed. It is current no longer, whatever the result.
    Result<Done> close();

  private:
    ResourceFile(ForkStore& store, QString path, ResourceFork fork);

    void leave();

    ForkStore& m_store;
    QString m_path;
    ResourceFork m_fork;
    ResourceFork m_stored;
};

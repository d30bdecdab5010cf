#pragma once

#include "platform/forks/ForkStore.h"
#include "platform/forks/ResourceFork.h"

#include <memory>

/// An item's resource fork, open for reading and writing. It stays in the store that was in use when it was
/// opened. The most recently opened file that is still open is the current one. Not thread-safe.
class ResourceFile {
  public:
    /// Opens the item's fork and makes it the current one. An error if the item has no fork or a damaged one.
    static Result<std::unique_ptr<ResourceFile>> open(const QString& path);

    /// Null if no file is open.
    static ResourceFile* current();

    /// Closes the file. Changes not written by `close` are lost.
    ~ResourceFile();
    ResourceFile(const ResourceFile&) = delete;
    ResourceFile& operator=(const ResourceFile&) = delete;

    ResourceFork& fork() { return m_fork; }

    /// Writes the whole fork if it was changed. After this, it is not the current file, even if the write
    /// fails.
    Result<Done> close();

  private:
    ResourceFile(ForkStore& store, QString path, ResourceFork fork);

    void leave();

    ForkStore& m_store;
    QString m_path;
    ResourceFork m_fork;
    ResourceFork m_stored;
};

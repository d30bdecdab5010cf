#pragma once

#include "platform/forks/ForkStore.h"
#include "platform/forks/ResourceFork.h"

#include <memory>
#include <span>

/// An item's resource fork, open for reading and writing. It stays in the store that was in use when it was
/// opened. The most recently opened file that is still open is the current one. Not thread-safe.
class ResourceFile {
  public:
    /// Opens the item's fork and makes it the current one. An error if the item has no fork or a damaged one.
    /// A folder never has a fork, even if the store keeps one under its name.
    static Result<std::unique_ptr<ResourceFile>> open(const QString& path);

    /// Removes all resources of these types and this number from the item's fork. Other resources stay, and
    /// the item's modification date is kept. Does nothing if there is no item, no fork or no such resource.
    /// NotWritable, and nothing removed, if the fork is read-only or such a resource is protected.
    static Result<Done> removeResources(const QString& path, std::span<const FourCharCode> types,
                                        qint16 number);

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

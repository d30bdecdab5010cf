#pragma once

#include "base/Result.h"
#include "platform/forks/FinderInfo.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

/// Access to what files have besides their data: resource forks, Finder information and modification dates.
/// It also tells the file browser that a folder has changed.
class ForkStore {
  public:
    /// The time of a file's last change, to the nanosecond.
    struct FileTime {
        qint64 seconds = 0;
        qint64 nanoseconds = 0;

        bool operator==(const FileTime&) const = default;
    };

    enum class Created { New, WasThere };

    virtual ~ForkStore() = default;

    /// Whether this store can keep forks. If not, every operation fails and touches nothing.
    virtual bool isAvailable() const = 0;

    /// Removes a file, or a folder with all that it holds, and what the store keeps for it.
    virtual Result<Done> removeItem(const QString& path) = 0;
    /// Removes what the store may still keep for a removed item, before a new item of its name is made.
    virtual Result<Done> removeRemains(const QString& path) = 0;

    virtual Result<FileTime> modificationDate(const QString& path) const = 0;
    virtual Result<Done> setModificationDate(const QString& path, const FileTime& date) = 0;

    /// The fork's bytes; empty for an item without one.
    virtual Result<QByteArray> resourceFork(const QString& path) const = 0;
    /// Replaces the fork. Whether an interrupted write leaves the old fork depends on the store.
    virtual Result<Done> setResourceFork(const QString& path, const QByteArray& fork) = 0;
    /// Makes an empty resource fork. If there is no file of that name, it makes one. An existing fork stays.
    /// Folders and links that lead nowhere are left alone.
    virtual Result<Created> createResourceFork(const QString& path,
                                               const std::optional<FinderInfo>& info) = 0;

    /// All zero for an item without Finder information.
    virtual Result<FinderInfo> finderInfo(const QString& path) const = 0;
    virtual Result<Done> setFinderInfo(const QString& path, const FinderInfo& info) = 0;

    /// Tells the system that the folder's appearance has changed.
    virtual Result<Done> notifyChanged(const QString& folder) = 0;
};

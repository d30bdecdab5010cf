#pragma once

#include "base/Result.h"
#include "platform/forks/FinderInfo.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

/// What files have besides their data, and what is done to files on its behalf: resource forks, Finder
/// information, modification dates, and telling the file browser that a folder has changed.
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

    /// Whether there are forks at all. Where there are none, every operation fails and touches nothing.
    virtual bool isAvailable() const = 0;

    /// Removes a file, or a folder with all that it holds, and what the store keeps of it.
    virtual Result<Done> removeItem(const QString& path) = 0;
    /// Removes what the store may still keep of an item that is gone, before a new one of its name is made.
    virtual Result<Done> removeRemains(const QString& path) = 0;

    virtual Result<FileTime> modificationDate(const QString& path) const = 0;
    virtual Result<Done> setModificationDate(const QString& path, const FileTime& date) = 0;

    /// The fork's bytes; empty for an item without one.
    virtual Result<QByteArray> resourceFork(const QString& path) const = 0;
    /// As whole as the store's place writes it.
    virtual Result<Done> setResourceFork(const QString& path, const QByteArray& fork) = 0;
    /// Makes a fork without resources: of a new file where there is nothing of that name, else of the file
    /// that is there unless it has one already. Folders, and links that lead nowhere, are left alone.
    virtual Result<Created> createResourceFork(const QString& path,
                                               const std::optional<FinderInfo>& info) = 0;

    /// All zero for an item without any.
    virtual Result<FinderInfo> finderInfo(const QString& path) const = 0;
    virtual Result<Done> setFinderInfo(const QString& path, const FinderInfo& info) = 0;

    /// Tells the system that what a folder shows has changed.
    virtual Result<Done> notifyChanged(const QString& folder) = 0;
};

#pragma once

#include "platform/forks/ForkStore.h"

/// The part of a store that does not depend on where forks are kept: plain file operations.
class FileForkStore : public ForkStore {
  public:
    bool isAvailable() const override { return true; }
    Result<Done> removeItem(const QString& path) override;
    /// Does nothing: removing an item removes all that belongs to it.
    Result<Done> removeRemains(const QString& path) override;
    Result<FileTime> modificationDate(const QString& path) const override;
    Result<Done> setModificationDate(const QString& path, const FileTime& date) override;
    Result<Created> createResourceFork(const QString& path, const std::optional<FinderInfo>& info) override;
    /// Only checks that the folder exists. The file browser sees the change by itself.
    Result<Done> notifyChanged(const QString& folder) override;
};

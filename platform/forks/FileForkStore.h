#pragma once

#include "platform/forks/ForkStore.h"

/// The part of a store that is the same wherever forks are kept: plain file operations.
class FileForkStore : public ForkStore {
  public:
    bool isAvailable() const override { return true; }
    Result<Done> removeItem(const QString& path) override;
    /// Nothing: what belongs to an item goes with it.
    Result<Done> removeRemains(const QString& path) override;
    Result<FileTime> modificationDate(const QString& path) const override;
    Result<Done> setModificationDate(const QString& path, const FileTime& date) override;
    Result<Created> createResourceFork(const QString& path, const std::optional<FinderInfo>& info) override;
    /// The file browser sees by itself that something in the folder is newer.
    Result<Done> notifyChanged(const QString& folder) override;
};

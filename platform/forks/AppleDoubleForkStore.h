#pragma once

#include "platform/forks/AppleDouble.h"
#include "platform/forks/FileForkStore.h"

/// Keeps forks in AppleDouble files beside the items, as macOS does in archives and on volumes without forks.
/// The file of "a/b" is "a/._b"; links are followed. An AppleDouble file that can't be read is an error and
/// is not changed. A replaced AppleDouble file keeps its permissions; a new one gets the item's read and
/// write permissions.
class AppleDoubleForkStore final : public FileForkStore {
  public:
    Result<Done> removeItem(const QString& path) override;
    Result<Done> removeRemains(const QString& path) override;
    Result<QByteArray> resourceFork(const QString& path) const override;
    Result<Done> setResourceFork(const QString& path, const QByteArray& fork) override;
    Result<FinderInfo> finderInfo(const QString& path) const override;
    Result<Done> setFinderInfo(const QString& path, const FinderInfo& info) override;

    /// The path of an item's AppleDouble file.
    static QString sidecarPath(const QString& path);
};

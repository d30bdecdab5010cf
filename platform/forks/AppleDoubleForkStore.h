#pragma once

#include "platform/forks/AppleDouble.h"
#include "platform/forks/FileForkStore.h"

/// Keeps forks in AppleDouble files beside the items: what macOS itself reads from archives and from volumes
/// without forks. The file of "a/b" is "a/._b"; links are followed. An AppleDouble file that can't be read is
/// an error, and stays as it is; one that is made or replaced can be read by whom the one before, or else the
/// item, can be.
class AppleDoubleForkStore final : public FileForkStore {
  public:
    Result<Done> removeItem(const QString& path) override;
    Result<Done> removeRemains(const QString& path) override;
    Result<QByteArray> resourceFork(const QString& path) const override;
    Result<Done> setResourceFork(const QString& path, const QByteArray& fork) override;
    Result<FinderInfo> finderInfo(const QString& path) const override;
    Result<Done> setFinderInfo(const QString& path, const FinderInfo& info) override;

    /// The AppleDouble file of an item.
    static QString sidecarPath(const QString& path);
};

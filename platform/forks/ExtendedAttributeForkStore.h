#pragma once

#include "platform/forks/FileForkStore.h"

/// Keeps forks in the extended attributes "com.apple.ResourceFork" and "com.apple.FinderInfo", as macOS does.
/// On other systems the names begin with "user.", and the file system limits the size of an attribute.
class ExtendedAttributeForkStore final : public FileForkStore {
  public:
    Result<QByteArray> resourceFork(const QString& path) const override;
    Result<Done> setResourceFork(const QString& path, const QByteArray& fork) override;
    Result<FinderInfo> finderInfo(const QString& path) const override;
    Result<Done> setFinderInfo(const QString& path, const FinderInfo& info) override;
};

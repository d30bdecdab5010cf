#pragma once

#include "platform/forks/ForkStore.h"

/// The store for systems whose files have no forks: every operation fails before it touches the disk.
class NoForkStore final : public ForkStore {
  public:
    bool isAvailable() const override { return false; }
    Result<Done> removeItem(const QString& /*path*/) override { return refusal(); }
    Result<Done> removeRemains(const QString& /*path*/) override { return refusal(); }
    Result<FileTime> modificationDate(const QString& /*path*/) const override { return refusal(); }
    Result<Done> setModificationDate(const QString& /*path*/, const FileTime& /*date*/) override {
        return refusal();
    }
    Result<QByteArray> resourceFork(const QString& /*path*/) const override { return refusal(); }
    Result<Done> setResourceFork(const QString& /*path*/, const QByteArray& /*fork*/) override {
        return refusal();
    }
    Result<Created> createResourceFork(const QString& /*path*/,
                                       const std::optional<FinderInfo>& /*info*/) override {
        return refusal();
    }
    Result<FinderInfo> finderInfo(const QString& /*path*/) const override { return refusal(); }
    Result<Done> setFinderInfo(const QString& /*path*/, const FinderInfo& /*info*/) override {
        return refusal();
    }
    Result<Done> notifyChanged(const QString& /*folder*/) override { return refusal(); }

  private:
    static Error refusal() {
        return {ErrorCode::Unsupported, QStringLiteral("files have no resource forks on this system")};
    }
};

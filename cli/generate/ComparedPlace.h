#pragma once

#include "files/OutputPlace.h"

#include <vector>

/// How a file on the disk is not what a run would write.
struct Difference {
    enum class Kind { Missing, OtherSize, OtherBytes };

    QString path;
    Kind kind;
    QString remark; ///< for OtherSize, which sizes
};

/// Compares files with those on the disk, and writes nothing.
class ComparedPlace final : public OutputPlace {
  public:
    Result<Done> makeFolder(const QString& /*path*/) override { return Done{}; }

    /// Fails if the file is there and can't be read.
    Result<Done> write(const QString& path, const QByteArray& bytes) override;

    /// In the order of the files. If a path was written several times, the last file counts.
    const std::vector<Difference>& differences() const { return m_differences; }

  private:
    std::vector<Difference> m_differences;
};

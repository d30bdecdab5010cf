#pragma once

#include "files/OutputPlace.h"

#include <set>

/// Fails where the disk would, as far as this can be told without writing, and writes nothing.
class PlannedPlace final : public OutputPlace {
  public:
    Result<Done> makeFolder(const QString& path) override;
    Result<Done> write(const QString& path, const QByteArray& bytes) override;

  private:
    std::set<QString> m_folders; ///< that would have been made
};

#pragma once

#include "files/OutputPlace.h"

#include <set>

/// Writes files as a tar stream to a descriptor, in the order in which they come. Each has the mode 0644, the
/// owner 0 and one date, so that the same files give the same stream. Source: POSIX.1-2017, pax, "ustar
/// Interchange Format" and "pax Interchange Format". Names that ustar can't hold, or that are not ASCII, are
/// in an extended header.
class TarPlace final : public OutputPlace {
  public:
    /// The descriptor stays open.
    explicit TarPlace(int descriptor) : m_descriptor(descriptor) {}

    Result<Done> makeFolder(const QString& path) override;

    /// The path is relative to the stream's root, also if it begins with a slash. After the first failure
    /// nothing is written any more, and only `finish` tells of it.
    Result<Done> write(const QString& path, const QByteArray& bytes) override;

    /// Ends the stream.
    Result<Done> finish();

  private:
    void put(const QByteArray& bytes);

    int m_descriptor;
    std::set<QString> m_folders;
    int m_failure = 0; ///< an errno value
};

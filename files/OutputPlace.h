#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

/// Where finished files go: onto the disk, or elsewhere.
class OutputPlace {
  public:
    virtual ~OutputPlace() = default;

    /// Makes the folder and all missing folders above it.
    virtual Result<Done> makeFolder(const QString& path) = 0;

    /// Puts a file with these bytes there, whole or not at all. Its folder is there already.
    virtual Result<Done> write(const QString& path, const QByteArray& bytes) = 0;

    /// The disk: `Folder::create` and `AtomicFile::write`.
    static OutputPlace& disk();
};

#pragma once

#include "base/Result.h"

#include <QString>

/// A reference to an item that exists.
struct FSRef {
    QString path; ///< absolute, without links
};

/// What paths are asked for besides what a text can.
namespace CarbonFSRefCreation {

/// The item of that name. Where there is none and `createFileIfNecessary` is set, an empty file is made
/// first; else it is NotFound. Also fails as the file system or AtomicFile does.
Result<FSRef> reference(const QString& path, bool createFileIfNecessary);

/// Fills `reference` with that item; whether there is one.
bool getFSRef(const QString& path, FSRef& reference, bool createFileIfNecessary);

} // namespace CarbonFSRefCreation

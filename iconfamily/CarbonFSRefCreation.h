#pragma once

#include "base/Result.h"

#include <QString>

/// A reference to an existing item.
struct FSRef {
    QString path; ///< absolute, with all links resolved
};

/// Makes references to items from their paths.
namespace CarbonFSRefCreation {

/// The item at `path`. If it is missing and `createFileIfNecessary` is set, an empty file is made first; if
/// it is not set, the error is NotFound. Other errors are those of the file system and of AtomicFile.
Result<FSRef> reference(const QString& path, bool createFileIfNecessary);

/// Fills `reference` with that item. Returns whether the item exists.
bool getFSRef(const QString& path, FSRef& reference, bool createFileIfNecessary);

} // namespace CarbonFSRefCreation

#pragma once

#include "base/Result.h"

#include <QString>

namespace Folder {

/// Makes the folder of exactly this path, and all missing folders above it. An existing folder is no error.
Result<Done> create(const QString& path);

/// Fails as `create` would, as far as this can be told without making a folder.
Result<Done> check(const QString& path);

/// Fails if nothing can be written below the folder at `path`, which may be missing. If it is, its nearest
/// existing parent is the folder that has to be writable.
Result<Done> checkTarget(const QString& path);

} // namespace Folder

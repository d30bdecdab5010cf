#pragma once

#include "base/Result.h"

#include <QString>

namespace Folder {

/// Makes the folder of exactly that path, with all missing folders above it. One that exists is no error.
Result<Done> create(const QString& path);

} // namespace Folder

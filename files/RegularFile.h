#pragma once

#include "base/Result.h"

#include <QByteArray>

#include <functional>
#include <string>

namespace RegularFile {

/// The bytes of the file of that name (in the file system's own bytes). Anything else than a regular file is
/// refused without being read, and so is one of more than `maximumBytes`. `check` sees the first 64 KiB; its
/// error is that of the file.
Result<QByteArray> read(const std::string& path, qint64 maximumBytes,
                        const std::function<Result<Done>(const QByteArray& start)>& check = {});

} // namespace RegularFile

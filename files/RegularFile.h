#pragma once

#include "base/Result.h"

#include <QByteArray>

#include <functional>
#include <optional>
#include <string>

namespace RegularFile {

/// The bytes of the file of that name (in the file system's own bytes). Anything else than a regular file is
/// refused without being read, and so is one of more than `maximumBytes`. `refuses` sees the first 64 KiB;
/// what it answers, if anything, is the error.
Result<QByteArray> read(const std::string& path, qint64 maximumBytes,
                        const std::function<std::optional<Error>(const QByteArray& start)>& refuses = {});

} // namespace RegularFile

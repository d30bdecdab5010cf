#pragma once

#include "base/Result.h"

#include <QByteArray>

#include <functional>
#include <string>

namespace RegularFile {

/// The bytes of the file with this path (in the file system's own encoding). Anything but a regular file is
/// refused without being read. `check` gets the first 64 KiB; if it returns an error, `read` returns that
/// error. TooLarge if the file has more than `maximumBytes`.
Result<QByteArray> read(const std::string& path, qint64 maximumBytes,
                        const std::function<Result<Done>(const QByteArray& start)>& check = {});

} // namespace RegularFile

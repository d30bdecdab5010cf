#pragma once

#include "base/Result.h"

#include <QByteArray>

#include <functional>
#include <string>

namespace RegularFile {

/// The bytes of the file with this path (in the file system's own encoding). Anything but a regular file is
/// refused without being read. `check` gets the first 64 KiB; if it returns an error, `read` returns that
/// error. TooLarge if the file has more than `maximumBytes`. NotReadable if the file changes while it is
/// read, as far as its size and its modification time tell.
Result<QByteArray> read(const std::string& path, qint64 maximumBytes,
                        const std::function<Result<Done>(const QByteArray& start)>& check = {});

/// The beginning of a file.
struct Part {
    QByteArray bytes;
    qint64 fileSize = 0; ///< of the whole file
};

/// As `read`, but no more of the file than `lengthOf` asks for, which sees the first 64 KiB. `maximumBytes`
/// is for what is asked for. A file that is shorter is read as a whole.
Result<Part> readPart(const std::string& path, qint64 maximumBytes,
                      const std::function<Result<qint64>(const QByteArray& start)>& lengthOf);

} // namespace RegularFile

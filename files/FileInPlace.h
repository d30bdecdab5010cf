#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

namespace FileInPlace {

/// Replaces the content of the file with that name by `bytes`; a missing file is made. After a failure, the
/// bytes written so far stay in the file.
Result<Done> write(const QString& path, const QByteArray& bytes);

} // namespace FileInPlace

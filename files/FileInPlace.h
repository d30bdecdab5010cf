#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

namespace FileInPlace {

/// Writes `bytes` into the file of that name itself, in the place of what it holds; a missing one is made.
/// What was written before a failure stays.
Result<Done> write(const QString& path, const QByteArray& bytes);

} // namespace FileInPlace

#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QString>

/// Gzip files (RFC 1952).
namespace Gzip {

bool isGzip(const QByteArray& bytes);

/// What a file was made of; of several members in it, the first. Damaged, TooLarge beyond `most` bytes,
/// OutOfMemory. `what` says in errors what it was made of.
Result<QByteArray> unpacked(const QByteArray& bytes, qsizetype most, const QString& what);

} // namespace Gzip

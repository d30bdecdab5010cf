#pragma once

#include "base/Result.h"

#include <QByteArray>

/// Gzip files (RFC 1952).
namespace Gzip {

bool isGzip(const QByteArray& bytes);

/// What a file was made of; of several members in it, the first. Damaged, TooLarge beyond `most` bytes,
/// OutOfMemory.
Result<QByteArray> unpacked(const QByteArray& bytes, qsizetype most);

} // namespace Gzip

#pragma once

#include "base/Result.h"

#include <QByteArray>

#include <functional>

namespace StandardInput {

/// The bytes of standard input up to its end, also from a pipe. `isWanted` gets the first 64 KiB; if it
/// returns false, no more is read, and these are the result. TooLarge if there are more than `maximumBytes`.
/// A terminal is refused.
Result<QByteArray> read(qint64 maximumBytes, const std::function<bool(const QByteArray& start)>& isWanted);

} // namespace StandardInput

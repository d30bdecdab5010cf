#pragma once

#include "base/Result.h"

#include <QByteArray>

#include <functional>

/// What tests expect of files that must not be read.
namespace Refusals {

/// Expects that the picture is refused with that code and a sentence.
void expectError(const QByteArray& picture, ErrorCode code);

/// Expects something of every beginning of `whole`, from no byte at all to all but `spare` and one more.
void eachBeginning(const QByteArray& whole, const std::function<void(const QByteArray&)>& expectation,
                   qsizetype spare = 0);

/// Expects that the picture is read, and that it is an error wherever it is cut off; `spare` bytes at its end
/// may be missing.
void expectNeedsEveryByte(const QByteArray& picture, qsizetype spare = 0);

/// Expects that `body` takes less than half a second: a header alone is enough to refuse a file, without room
/// for the pixels that it promises.
void expectAtOnce(const std::function<void()>& body);

} // namespace Refusals

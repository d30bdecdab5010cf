#pragma once

#include "base/Result.h"

#include <QString>

/// The cause of `number` (an errno value) as the system words it, "No space left on device" for example.
QString systemSentence(int number);

/// The error of a call that left `number` in errno. Want of memory and a full disk (ENOSPC, EDQUOT) have
/// codes of their own, every other cause has the code `otherwise`.
Error systemError(int number, ErrorCode otherwise);

#pragma once

#include "base/Result.h"

#include <QString>

/// The system's own words for `number` (an errno value) in English, whatever the locale, for example "No
/// space left on device".
QString systemSentence(int number);

/// The error of a call that left `number` in errno. Too little memory and a full disk (ENOSPC, EDQUOT) have
/// their own codes; every other cause gets the code `otherwise`.
Error systemError(int number, ErrorCode otherwise);

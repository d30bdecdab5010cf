#include "base/SystemError.h"

#include "base/ShortMemory.h"

#include <cerrno>
#include <cstring>
#include <system_error>

QString systemSentence(int number) {
#if defined(__GLIBC__) && __GLIBC_PREREQ(2, 32)
    // These words are always English. Those of strerror are in the language and encoding of the locale.
    const char* sentence = strerrordesc_np(number);
    return sentence != nullptr ? QString::fromLatin1(sentence)
                               : QStringLiteral("Unknown error %1").arg(number);
#else
    return QString::fromStdString(std::generic_category().message(number));
#endif
}

Error systemError(int number, ErrorCode otherwise) {
    if (number == ENOMEM)
        return outOfMemory();
    const bool isFull = number == ENOSPC || number == EDQUOT;
    return {isFull ? ErrorCode::DiskFull : otherwise, systemSentence(number)};
}

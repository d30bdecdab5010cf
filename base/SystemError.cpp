#include "base/SystemError.h"

#include "base/ShortMemory.h"

#include <cerrno>
#include <system_error>

QString systemSentence(int number) {
    return QString::fromStdString(std::generic_category().message(number));
}

Error systemError(int number, ErrorCode otherwise) {
    if (number == ENOMEM)
        return outOfMemory();
    const bool isFull = number == ENOSPC || number == EDQUOT;
    return {isFull ? ErrorCode::DiskFull : otherwise, systemSentence(number)};
}

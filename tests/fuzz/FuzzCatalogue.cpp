// Any bytes as a property list, and as a size string.

#include "generation/IconSizeCatalogue.h"
#include "platform/PropertyList.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    (void)PropertyList::parse(bytes);
    (void)sizeFromString(QString::fromUtf8(bytes));
    return 0;
}

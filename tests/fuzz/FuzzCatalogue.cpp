// Reads any bytes as a size catalogue. Each icon of a valid one has a size and a name.

#include "generation/IconSizeCatalogue.h"
#include "platform/services/PropertyList.h"
#include "tests/fuzz/Require.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const Result<QVariant> list = PropertyList::parse(bytes);
    if (!list) {
        require(!list.error().sentence.isEmpty());
        return 0;
    }
    for (const QVariant& platform : list->toList()) {
        for (const QVariant& entry : platform.toMap()) {
            (void)IconSizeCatalogue::dimensions(entry.toMap());
            (void)IconSizeCatalogue::name(entry.toMap());
        }
    }
    return 0;
}

// Any bytes as an icns file, and as one packed channel.

#include "platform/icns/IcnsReader.h"
#include "platform/icns/IcnsRle.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    if (const Result<IcnsReader> reader = IcnsReader::open(bytes)) {
        for (const IcnsElement& element : reader->elements()) {
            const Result<DecodedPicture> picture = reader->picture(element);
            if (picture && picture->raster.isNull())
                std::abort();
        }
    }
    // What is packed unpacks to itself, with nothing left over.
    QByteArray packed;
    const std::span<const std::uint8_t> channel(data, size);
    IcnsRle::pack(channel, packed, size % 2 == 1);
    std::vector<std::uint8_t> unpacked(size);
    const std::optional<QByteArrayView> rest = IcnsRle::unpack(packed, unpacked);
    if (!rest || !rest->isEmpty() || !std::ranges::equal(channel, unpacked))
        std::abort();
    return 0;
}

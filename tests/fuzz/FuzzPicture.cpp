// Any bytes as a picture: decoded, or refused with a sentence.

#include "platform/ImageSource.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const Result<DecodedPicture> picture = ImageSource::decode(bytes);
    if (picture ? picture->raster.isNull() : picture.error().sentence.isEmpty())
        std::abort();
    return 0;
}

// Reads any bytes as an icon family and decodes every element.

#include "iconfamily/IconFamily.h"
#include "tests/fuzz/Require.h"

#include <cstdint>

namespace {

const FourCharCode readableTypes[] = {"ic04", "ic05", "ic06", "ic07", "ic08", "ic11", "ic12", "is32",
                                      "il32", "ih32", "it32", "ic09", "ic10", "ic13", "ic14"};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto family = IconFamily::initWithData(bytes);
    require(family->data() == bytes);
    for (const FourCharCode type : readableTypes) {
        const auto bitmap = family->bitmapImageRepWithAlphaForIconFamilyElement(type);
        require(bitmap == nullptr ||
                bitmap->bitmapData().size() == qsizetype{4} * bitmap->pixelsWide() * bitmap->pixelsHigh());
    }
    const Image image = family->imageWithAllReps();
    for (const auto& representation : image.representations())
        require(!representation->pixelSize().isEmpty());
    return 0;
}

// Any bytes as an icon family: every element decoded, and elements stored into it and fetched back.

#include "iconfamily/IconFamily.h"
#include "platform/icns/IconFamilyBlock.h"

#include <cstdint>
#include <cstdlib>

namespace {

const FourCharCode readableTypes[] = {"ic04", "ic05", "ic06", "ic07", "ic08", "ic11",
                                      "ic12", "is32", "il32", "ih32", "it32"};

void require(bool isTrue) {
    if (!isTrue)
        std::abort();
}

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

    // What is stored is fetched, and nothing else has changed.
    QByteArray block = bytes;
    const FourCharCode stored("s8mk");
    const std::optional<QByteArray> other = IconFamilyBlock::getIconFamilyData(block, "ic04");
    const QByteArray value = bytes.left(300);
    if (IconFamilyBlock::setIconFamilyData(block, stored, value) != IconFamilyBlock::Status::NoError) {
        require(block == bytes);
        return 0;
    }
    require(IconFamilyBlock::getIconFamilyData(block, stored) == value);
    require(IconFamilyBlock::getIconFamilyData(block, "ic04") == other);
    QByteArray again = block;
    require(IconFamilyBlock::setIconFamilyData(again, stored, value) == IconFamilyBlock::Status::NoError);
    require(again == block);
    return 0;
}

// Reads any bytes as a picture: it is decoded, or refused with a sentence. A picture that is loaded for small
// renders has the same reduced copies as the picture that is loaded whole.

#include "imaging/image/BitmapImageRep.h"
#include "imaging/io/ImageSource.h"
#include "tests/fuzz/Require.h"

#include <algorithm>
#include <cstdint>

namespace {

void requireSameCopies(const QByteArray& bytes) {
    constexpr int largestSide = 64;
    const int side = 1 + static_cast<std::uint8_t>(bytes.back()) % largestSide;
    const ReducedCopies::Renders renders{{QSizeF(side, side)}};
    const Result<LoadedPicture> whole = ImageSource::load(bytes);
    const Result<LoadedPicture> limited = ImageSource::load(bytes, {renders});
    require(whole && limited && limited->image.size() == whole->image.size());
    const auto& all = whole->image.representations();
    const bool hasOwnSizes = bytes.startsWith("icns") || bytes.startsWith(QByteArrayView("\0\0\1\0", 4));
    if (!whole->isDrawing && !hasOwnSizes) {
        const QSize expected = ReducedCopies::largestNeeded(all.front()->pixelSize(), renders);
        require(limited->image.representations().front()->pixelSize() == expected);
    }
    for (const auto& representation : limited->image.representations()) {
        const auto* copy = dynamic_cast<const BitmapImageRep*>(representation.get());
        if (copy == nullptr)
            continue;
        require(std::ranges::any_of(all, [&](const auto& other) {
            const auto* bitmap = dynamic_cast<const BitmapImageRep*>(other.get());
            return bitmap != nullptr && *bitmap->raster() == *copy->raster();
        }));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const Result<DecodedPicture> picture = ImageSource::decode(bytes);
    if (!picture) {
        require(!picture.error().sentence.isEmpty());
        return 0;
    }
    require(!picture->raster.isNull());
    constexpr qsizetype mostBytes = 4 << 20;
    if (picture->raster.sizeInBytes() <= mostBytes)
        requireSameCopies(bytes);
    return 0;
}

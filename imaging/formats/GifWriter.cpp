#include "imaging/formats/GifWriter.h"

#include "imaging/formats/ColorTable.h"
#include "imaging/image/EncodedPicture.h"

#include <gif_lib.h>

#include <memory>

namespace {

constexpr int largestSide = 65535;

int writeOutput(GifFileType* gif, const GifByteType* bytes, int length) {
    // No exception may pass through giflib.
    return unlessMemoryIsShort([&] {
        static_cast<QByteArray*>(gif->UserData)->append(reinterpret_cast<const char*>(bytes), length);
        return length;
    });
}

struct GifClose {
    void operator()(GifFileType* gif) const { EGifCloseFile(gif, nullptr); }
};

struct FreeColorMap {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};

QByteArray file(const QImage& raster) {
    IndexedPicture picture = indexedPicture(raster);
    if (picture.indexes.empty())
        return {};
    const int colorCount = 1 << GifBitSize(static_cast<int>(picture.colors.size()));
    const std::unique_ptr<ColorMapObject, FreeColorMap> map(GifMakeMapObject(colorCount, nullptr));
    QByteArray bytes;
    std::unique_ptr<GifFileType, GifClose> gif(EGifOpen(&bytes, writeOutput, nullptr));
    if (!map || !gif)
        return {};
    for (std::size_t i = 0; i < picture.colors.size(); ++i)
        map->Colors[i] = {picture.colors[i][0], picture.colors[i][1], picture.colors[i][2]};
    EGifSetGifVersion(gif.get(), true);
    constexpr int bitsPerChannel = 8;
    GraphicsControlBlock control{};
    control.TransparentColor = picture.hasTransparency ? 0 : NO_TRANSPARENT_COLOR;
    GifByteType extension[4];
    const auto length = static_cast<int>(EGifGCBToExtension(&control, extension));
    if (EGifPutScreenDesc(gif.get(), raster.width(), raster.height(), bitsPerChannel, 0, map.get()) ==
            GIF_ERROR ||
        EGifPutExtension(gif.get(), GRAPHICS_EXT_FUNC_CODE, length, extension) == GIF_ERROR ||
        EGifPutImageDesc(gif.get(), 0, 0, raster.width(), raster.height(), false, nullptr) == GIF_ERROR)
        return {};
    GifByteType* row = picture.indexes.data();
    for (int y = 0; y < raster.height(); ++y, row += raster.width()) {
        if (EGifPutLine(gif.get(), row, raster.width()) == GIF_ERROR)
            return {};
    }
    return EGifCloseFile(gif.release(), nullptr) == GIF_ERROR ? QByteArray() : bytes;
}

} // namespace

QByteArray encodeGif(const QImage& raster) {
    if (raster.width() > largestSide || raster.height() > largestSide)
        return {};
    return encodedPicture(raster, [&] { return file(raster); });
}

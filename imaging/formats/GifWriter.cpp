#include "imaging/formats/GifWriter.h"

#include "imaging/formats/ColorTable.h"
#include "imaging/image/EncodedPicture.h"

#include <gif_lib.h>

#include <memory>

namespace {

constexpr int largestSide = 65535;

int writeOutput(GifFileType* gif, const GifByteType* bytes, int length) {
    // No exception may pass through giflib.
    const Result<Done> appended = unlessMemoryIsShort([&] {
        static_cast<QByteArray*>(gif->UserData)->append(reinterpret_cast<const char*>(bytes), length);
    });
    return appended ? length : 0;
}

/// Why the library failed. It writes only to memory, so a failed write is want of memory.
Error cannotWrite(int code) {
    if (code == E_GIF_ERR_WRITE_FAILED || code == E_GIF_ERR_DISK_IS_FULL || code == E_GIF_ERR_NOT_ENOUGH_MEM)
        return outOfMemory();
    const char* text = GifErrorString(code);
    return {ErrorCode::Unsupported,
            QStringLiteral("the GIF file can't be made (%1)")
                .arg(text != nullptr ? QString::fromLatin1(text) : QString::number(code))};
}

struct EndWriting {
    void operator()(GifFileType* gif) const { EGifCloseFile(gif, nullptr); }
};

struct FreeColorMap {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};

Result<QByteArray> gifFile(const QImage& raster) {
    Result<IndexedPicture> indexed = indexedPicture(raster);
    if (!indexed)
        return indexed.error();
    IndexedPicture& picture = *indexed;
    const int colorCount = 1 << GifBitSize(static_cast<int>(picture.colors.size()));
    const std::unique_ptr<ColorMapObject, FreeColorMap> map(GifMakeMapObject(colorCount, nullptr));
    QByteArray bytes;
    int code = E_GIF_ERR_NOT_ENOUGH_MEM;
    std::unique_ptr<GifFileType, EndWriting> gif(EGifOpen(&bytes, writeOutput, &code));
    if (!map)
        return outOfMemory();
    if (!gif)
        return cannotWrite(code);
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
        return cannotWrite(gif->Error);
    GifByteType* row = picture.indexes.data();
    for (int y = 0; y < raster.height(); ++y, row += raster.width()) {
        if (EGifPutLine(gif.get(), row, raster.width()) == GIF_ERROR)
            return cannotWrite(gif->Error);
    }
    if (EGifCloseFile(gif.release(), &code) == GIF_ERROR)
        return cannotWrite(code);
    return bytes;
}

} // namespace

Result<QByteArray> encodeGif(const QImage& raster) {
    if (raster.width() > largestSide || raster.height() > largestSide)
        return sideTooLong(largestSide);
    return encodedPicture(raster, [&] { return gifFile(raster); });
}

#include "imaging/formats/GifReader.h"

#include "base/ShortMemory.h"

#include <gif_lib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace {

struct GifInput {
    const QByteArray& bytes;
    qsizetype position = 0;
};

int readInput(GifFileType* gif, GifByteType* out, int length) {
    auto* input = static_cast<GifInput*>(gif->UserData);
    const qsizetype count = std::min<qsizetype>(length, input->bytes.size() - input->position);
    std::memcpy(out, input->bytes.constData() + input->position, static_cast<std::size_t>(count));
    input->position += count;
    return static_cast<int>(count);
}

struct GifClose {
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};

Error failure(int code) {
    if (code == D_GIF_ERR_NOT_ENOUGH_MEM)
        return outOfMemory();
    const char* text = GifErrorString(code);
    return PictureReader::damaged(QStringLiteral("GIF"), text != nullptr
                                                             ? QString::fromLatin1(text)
                                                             : QStringLiteral("error %1").arg(code));
}

/// Reads the file's records up to the first frame's descriptor. A control block on the way sets
/// `transparent`: to the index of transparent pixels, or to -1. On failure it returns false, and the
/// library's error is set.
bool findFirstFrame(GifFileType* gif, int& transparent) {
    for (;;) {
        GifRecordType type = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(gif, &type) == GIF_ERROR)
            return false;
        if (type == IMAGE_DESC_RECORD_TYPE)
            return DGifGetImageDesc(gif) != GIF_ERROR;
        if (type != EXTENSION_RECORD_TYPE) {
            gif->Error = D_GIF_ERR_NO_IMAG_DSCR;
            return false;
        }
        int code = 0;
        GifByteType* block = nullptr;
        if (DGifGetExtension(gif, &code, &block) == GIF_ERROR)
            return false;
        while (block != nullptr) {
            GraphicsControlBlock control{};
            if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
                transparent = control.TransparentColor;
            if (DGifGetExtensionNext(gif, &block) == GIF_ERROR)
                return false;
        }
    }
}

/// The rows of a frame in the order in which the file has them.
std::vector<int> rowOrder(int height, bool isInterlaced) {
    std::vector<int> rows;
    rows.reserve(static_cast<std::size_t>(height));
    struct Pass {
        int first;
        int step;
    };
    static constexpr Pass interlaced[] = {{0, 8}, {4, 8}, {2, 4}, {1, 2}};
    static constexpr Pass plain[] = {{0, 1}};
    const auto add = [&](const Pass& pass) {
        for (int y = pass.first; y < height; y += pass.step)
            rows.push_back(y);
    };
    if (isInterlaced)
        std::ranges::for_each(interlaced, add);
    else
        std::ranges::for_each(plain, add);
    return rows;
}

Result<DecodedPicture> read(const QByteArray& bytes) {
    GifInput input{bytes};
    int code = 0;
    const RefusedMemory memory;
    const std::unique_ptr<GifFileType, GifClose> gif(DGifOpen(&input, readInput, &code));
    // Without memory for the colours the library says that there is no screen.
    if (!gif)
        return memory.wasSeen() ? outOfMemory() : failure(code);
    int transparent = NO_TRANSPARENT_COLOR;
    if (!findFirstFrame(gif.get(), transparent))
        return failure(gif->Error);
    const GifImageDesc& frame = gif->Image;
    const ColorMapObject* colors = frame.ColorMap != nullptr ? frame.ColorMap : gif->SColorMap;
    if (colors == nullptr)
        return PictureReader::damaged(QStringLiteral("GIF"), QStringLiteral("it has no colours"));
    // A canvas without a size, or too small for the frame, is enlarged to hold the frame.
    const int canvasWidth = std::max(gif->SWidth, frame.Left + frame.Width);
    const int canvasHeight = std::max(gif->SHeight, frame.Top + frame.Height);
    if (const Result<Done> allowed = PictureReader::checkSize(frame.Width, frame.Height); !allowed)
        return allowed.error();
    Result<QImage> raster = PictureReader::newPicture(canvasWidth, canvasHeight);
    if (!raster)
        return raster.error();
    raster->fill(0);
    std::vector<GifPixelType> line(static_cast<std::size_t>(frame.Width));
    for (const int y : rowOrder(frame.Height, frame.Interlace)) {
        if (DGifGetLine(gif.get(), line.data(), frame.Width) == GIF_ERROR)
            return failure(gif->Error);
        uchar* out = raster->scanLine(frame.Top + y) + 4 * static_cast<std::ptrdiff_t>(frame.Left);
        for (const GifPixelType index : line) {
            if (index != transparent && index >= colors->ColorCount)
                return PictureReader::damaged(QStringLiteral("GIF"), QStringLiteral("a colour is missing"));
            if (index != transparent) {
                const GifColorType& color = colors->Colors[index];
                const uchar pixel[4] = {color.Red, color.Green, color.Blue, 255};
                std::memcpy(out, pixel, 4);
            }
            out += 4;
        }
    }
    return DecodedPicture{std::move(*raster), {}};
}

} // namespace

Result<DecodedPicture> readGif(const QByteArray& bytes) {
    return unlessMemoryIsShort([&] { return read(bytes); });
}

#include "imaging/formats/GifReader.h"

#include "base/ShortMemory.h"
#include "imaging/image/PictureBuilder.h"

#include <gif_lib.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>
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

struct EndReading {
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};

Error damagedGif(int code) {
    if (code == D_GIF_ERR_NOT_ENOUGH_MEM)
        return outOfMemory();
    const char* text = GifErrorString(code);
    return PictureReader::damaged(QStringLiteral("GIF"), text != nullptr
                                                             ? QString::fromLatin1(text)
                                                             : QStringLiteral("error %1").arg(code));
}

/// Reads the file's records up to the next frame's descriptor. A control block on the way sets
/// `transparent`: to the index of transparent pixels, or to -1. On failure it returns false, and the
/// library's error is set.
bool findFrame(GifFileType* gif, int& transparent) {
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

/// Reads a frame row by row from its top.
class FrameRows {
  public:
    /// An interlaced frame is read whole: a byte for each pixel.
    Result<Done> begin(GifFileType* gif) {
        m_gif = gif;
        m_width = static_cast<std::size_t>(gif->Image.Width);
        m_isInterlaced = gif->Image.Interlace;
        const auto height = static_cast<std::size_t>(gif->Image.Height);
        m_indices.resize(m_isInterlaced ? m_width * height : m_width);
        if (!m_isInterlaced)
            return Done{};
        struct Pass {
            std::size_t first;
            std::size_t step;
        };
        for (const auto& [first, step] : {Pass{0, 8}, Pass{4, 8}, Pass{2, 4}, Pass{1, 2}}) {
            for (std::size_t y = first; y < height; y += step) {
                if (!readLine(m_indices.data() + y * m_width))
                    return damagedGif(gif->Error);
            }
        }
        return Done{};
    }

    /// The colours of the next row.
    Result<std::span<const GifPixelType>> next() {
        if (!m_isInterlaced && !readLine(m_indices.data()))
            return damagedGif(m_gif->Error);
        const std::size_t start = m_isInterlaced ? m_width * m_next++ : 0;
        return std::span<const GifPixelType>(m_indices).subspan(start, m_width);
    }

  private:
    bool readLine(GifPixelType* line) {
        return DGifGetLine(m_gif, line, static_cast<int>(m_width)) != GIF_ERROR;
    }

    GifFileType* m_gif = nullptr;
    std::size_t m_width = 0;
    bool m_isInterlaced = false;
    std::size_t m_next = 0;
    std::vector<GifPixelType> m_indices;
};

/// Puts the colours of a frame's row into pixels that are transparent. Damaged where one is not in the table.
Result<Done> putColors(std::span<const GifPixelType> indices, const ColorMapObject& colors, int transparent,
                       uchar* out) {
    for (const GifPixelType index : indices) {
        if (index != transparent && index >= colors.ColorCount)
            return PictureReader::damaged(
                QStringLiteral("GIF"),
                QStringLiteral("a pixel has a colour that is not in the colour table"));
        if (index != transparent) {
            const GifColorType& color = colors.Colors[index];
            const uchar pixel[4] = {color.Red, color.Green, color.Blue, 255};
            std::memcpy(out, pixel, 4);
        }
        out += 4;
    }
    return Done{};
}

Result<DecodedPicture> decodedGif(const QByteArray& bytes, const ReducedCopies::Renders& renders) {
    GifInput input{bytes};
    int code = 0;
    const RefusedMemory memory;
    const std::unique_ptr<GifFileType, EndReading> gif(DGifOpen(&input, readInput, &code));
    // Without memory for the colours the library says that there is no screen.
    if (!gif)
        return memory.wasSeen() ? outOfMemory() : damagedGif(code);
    int transparent = NO_TRANSPARENT_COLOR;
    if (!findFrame(gif.get(), transparent))
        return damagedGif(gif->Error);
    const GifImageDesc& frame = gif->Image;
    const ColorMapObject* colors = frame.ColorMap != nullptr ? frame.ColorMap : gif->SColorMap;
    if (colors == nullptr)
        return PictureReader::damaged(QStringLiteral("GIF"), QStringLiteral("it has no colours"));
    // A canvas without a size, or too small for the frame, is enlarged to hold the frame.
    const int canvasWidth = std::max(gif->SWidth, frame.Left + frame.Width);
    const int canvasHeight = std::max(gif->SHeight, frame.Top + frame.Height);
    if (const Result<Done> allowed = PictureReader::checkSize(frame.Width, frame.Height); !allowed)
        return allowed.error();
    PictureBuilder picture(renders);
    const SampleLayout layout{SampleLayout::Colors::RGB, SampleLayout::Alpha::Straight, 8, false};
    if (const Result<Done> begun = picture.begin(canvasWidth, canvasHeight, layout); !begun)
        return begun.error();
    FrameRows rows;
    if (const Result<Done> begun = rows.begin(gif.get()); !begun)
        return begun.error();
    for (int y = 0; y < canvasHeight; ++y) {
        uchar* row = picture.nextRow();
        std::memset(row, 0, 4 * static_cast<std::size_t>(canvasWidth));
        if (y >= frame.Top && y < frame.Top + frame.Height) {
            const Result<std::span<const GifPixelType>> indices = rows.next();
            if (!indices)
                return indices.error();
            const Result<Done> put =
                putColors(*indices, *colors, transparent, row + 4 * static_cast<std::ptrdiff_t>(frame.Left));
            if (!put)
                return put.error();
        }
        picture.addRow(row);
    }
    Result<DecodedPicture> result = picture.finish();
    if (result && findFrame(gif.get(), transparent))
        result->warnings << PictureReader::framesWarning();
    return result;
}

} // namespace

Result<DecodedPicture> readGif(const QByteArray& bytes, const ReducedCopies::Renders& renders) {
    return unlessMemoryIsShort([&] { return decodedGif(bytes, renders); });
}

#include "imaging/formats/Jpeg2000Codestream.h"

#include "base/ByteReader.h"

#include <limits>
#include <vector>

namespace {

/// The header of a box in a JP2 file. The length is that of the whole box.
struct BoxHeader {
    quint32_be length;
    quint32_be type;
};
static_assert(sizeof(BoxHeader) == 8);

/// The size marker's data after its own length and the capabilities: where the picture and the first tile lie
/// on the reference grid.
struct GridExtent {
    quint32_be right;
    quint32_be bottom;
    quint32_be left;
    quint32_be top;
    quint32_be tileWidth;
    quint32_be tileHeight;
    quint32_be tileLeft;
    quint32_be tileTop;
};
static_assert(sizeof(GridExtent) == 32);

struct Box {
    FourCharCode type;
    qsizetype headerSize;
    ByteCount size; ///< with the header; it may reach beyond the file
};

/// The box at the start of `bytes`. No value where its header breaks off, or states a length that is too
/// short.
std::optional<Box> firstBox(const ByteReader& bytes) {
    const auto header = bytes.record<BoxHeader>(0);
    if (!header)
        return std::nullopt;
    Box box{FourCharCode(header->type), sizeof(BoxHeader), header->length};
    // Length 0: the box reaches to the end. Length 1: the true length follows in 64 bits.
    if (header->length == 0)
        box.size = bytes.size();
    if (header->length == 1) {
        box.headerSize += qsizetype{sizeof(quint64)};
        box.size = bytes.bigEndian<quint64>(sizeof(BoxHeader)).value_or(0);
    }
    return box.size.isAtMost(box.headerSize - 1) ? std::nullopt : std::optional(box);
}

/// The number of tiles between `origin` and `end`; no value where the numbers are impossible.
std::optional<quint64> tilesAlong(quint32 origin, quint32 length, quint32 end) {
    if (length == 0 || origin > end)
        return std::nullopt;
    return (quint64{end} - origin + length - 1) / length;
}

} // namespace

std::optional<QByteArrayView> Jpeg2000Codestream::find(QByteArrayView file) {
    if (file.startsWith(start))
        return file;
    constexpr FourCharCode codestreamBox("jp2c");
    std::optional<ByteReader> rest{ByteReader(file)};
    while (rest) {
        const std::optional<Box> box = firstBox(*rest);
        if (!box)
            return std::nullopt;
        if (box->type == codestreamBox) {
            const auto found = rest->from(box->headerSize);
            return found && found->view().startsWith(start) ? std::optional(found->view()) : std::nullopt;
        }
        rest = rest->from(box->size);
    }
    return std::nullopt;
}

std::optional<Jpeg2000Codestream::Size> Jpeg2000Codestream::size(QByteArrayView codestream) {
    constexpr qsizetype extentAt = 8;
    const auto extent = ByteReader(codestream).record<GridExtent>(extentAt);
    if (!extent)
        return std::nullopt;
    const quint32 right = extent->right;
    const quint32 bottom = extent->bottom;
    const quint32 left = extent->left;
    const quint32 top = extent->top;
    const auto across = tilesAlong(extent->tileLeft, extent->tileWidth, right);
    const auto down = tilesAlong(extent->tileTop, extent->tileHeight, bottom);
    constexpr quint32 largest = std::numeric_limits<int>::max();
    if (!across || !down || left > right || top > bottom || right - left > largest || bottom - top > largest)
        return std::nullopt;
    return Size{QSize(static_cast<int>(right - left), static_cast<int>(bottom - top)), *across * *down};
}

bool Jpeg2000Codestream::isWellFormed(QByteArrayView codestream) {
    const ByteReader reader(codestream);
    const auto length = reader.bigEndian<quint16>(4);
    const auto components = reader.bigEndian<quint16>(40);
    return length && components && *length == 38 + 3 * *components;
}

bool Jpeg2000Codestream::hasAllTiles(QByteArrayView codestream) {
    constexpr quint64 mostTiles = 65535;
    const std::optional<Size> told = size(codestream);
    if (!told || told->tiles > mostTiles)
        return false;
    constexpr quint16 tilePart = 0xff90;
    // A length follows each marker of the main header. It does not count the marker itself.
    const ByteReader reader(codestream);
    ByteCount at = 2;
    while (reader.bigEndian<quint16>(at).value_or(tilePart) != tilePart) {
        const auto length = reader.bigEndian<quint16>(at + 2);
        if (!length)
            return false;
        at = at + 2 + *length;
    }
    std::vector<bool> seen(told->tiles);
    quint64 missing = told->tiles;
    while (reader.bigEndian<quint16>(at) == tilePart) {
        const auto tile = reader.bigEndian<quint16>(at + 4);
        const auto length = reader.bigEndian<quint32>(at + 6);
        if (!tile || !length || *tile >= told->tiles)
            return false;
        if (!seen[*tile])
            --missing;
        seen[*tile] = true;
        // Length 0: the last part reaches to the end.
        if (*length == 0)
            break;
        at = at + *length;
    }
    return missing == 0;
}

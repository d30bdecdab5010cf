#include "imaging/formats/Jpeg2000Codestream.h"

#include <QtEndian>

#include <array>
#include <limits>
#include <vector>

namespace {

template <typename T>
std::optional<T> read(QByteArrayView bytes, qsizetype at) {
    if (bytes.size() - at < static_cast<qsizetype>(sizeof(T)))
        return std::nullopt;
    return qFromBigEndian<T>(bytes.data() + at);
}

/// The tiles between `origin` and `end`; no value where that can't be.
std::optional<quint64> tilesAlong(quint32 origin, quint32 length, quint32 end) {
    if (length == 0 || origin > end)
        return std::nullopt;
    return (quint64{end} - origin + length - 1) / length;
}

} // namespace

std::optional<QByteArrayView> Jpeg2000Codestream::find(QByteArrayView file) {
    if (file.startsWith(start))
        return file;
    constexpr quint32 codestreamBox = 0x6a703263;
    qsizetype at = 0;
    for (;;) {
        const auto length = read<quint32>(file, at);
        const auto box = read<quint32>(file, at + 4);
        if (!length || !box)
            return std::nullopt;
        const auto rest = static_cast<quint64>(file.size() - at);
        // A box of length 0 reaches to the end, one of length 1 tells its length in 64 bits.
        const auto longLength = *length == 1 ? read<quint64>(file, at + 8) : std::optional<quint64>(*length);
        const qsizetype header = *length == 1 ? 16 : 8;
        const quint64 size = *length == 0 ? rest : longLength.value_or(0);
        if (size < static_cast<quint64>(header))
            return std::nullopt;
        if (*box == codestreamBox) {
            const QByteArrayView found = file.sliced(at + header);
            return found.startsWith(start) ? std::optional(found) : std::nullopt;
        }
        if (size >= rest)
            return std::nullopt;
        at += static_cast<qsizetype>(size);
    }
}

std::optional<Jpeg2000Codestream::Size> Jpeg2000Codestream::size(QByteArrayView codestream) {
    constexpr qsizetype extentAt = 8;
    std::array<quint32, 8> values{};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto value = read<quint32>(codestream, extentAt + 4 * static_cast<qsizetype>(i));
        if (!value)
            return std::nullopt;
        values[i] = *value;
    }
    const auto [right, bottom, left, top, tileWidth, tileHeight, tileLeft, tileTop] = values;
    const auto across = tilesAlong(tileLeft, tileWidth, right);
    const auto down = tilesAlong(tileTop, tileHeight, bottom);
    constexpr quint32 largest = std::numeric_limits<int>::max();
    if (!across || !down || left > right || top > bottom || right - left > largest || bottom - top > largest)
        return std::nullopt;
    return Size{QSize(static_cast<int>(right - left), static_cast<int>(bottom - top)), *across * *down};
}

bool Jpeg2000Codestream::isWellFormed(QByteArrayView codestream) {
    const auto length = read<quint16>(codestream, 4);
    const auto components = read<quint16>(codestream, 40);
    return length && components && *length == 38 + 3 * *components;
}

bool Jpeg2000Codestream::hasAllTiles(QByteArrayView codestream) {
    constexpr quint64 mostTiles = 65535;
    const std::optional<Size> told = size(codestream);
    if (!told || told->tiles > mostTiles)
        return false;
    constexpr quint16 tilePart = 0xff90;
    // The main header's markers each tell their length, which does not count the marker itself.
    qsizetype at = 2;
    while (read<quint16>(codestream, at).value_or(tilePart) != tilePart) {
        const auto length = read<quint16>(codestream, at + 2);
        if (!length)
            return false;
        at += 2 + *length;
    }
    std::vector<bool> seen(told->tiles);
    quint64 missing = told->tiles;
    while (read<quint16>(codestream, at) == tilePart) {
        const auto tile = read<quint16>(codestream, at + 4);
        const auto length = read<quint32>(codestream, at + 6);
        if (!tile || !length || *tile >= told->tiles)
            return false;
        if (!seen[*tile])
            --missing;
        seen[*tile] = true;
        // The last part may reach to the end.
        if (*length == 0)
            break;
        at += *length;
    }
    return missing == 0;
}

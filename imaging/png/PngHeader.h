#pragma once

#include "base/ByteReader.h"

#include <QByteArrayView>
#include <QSize>

#include <optional>

/// The signature and the first chunk of a PNG file. Source: ISO/IEC 15948, 5.2, 7.1 and 11.2.2.
namespace PngHeader {

inline constexpr QByteArrayView signature("\x89PNG\r\n\x1a\n");

/// The types of chunks.
inline constexpr FourCharCode headerType("IHDR");
inline constexpr FourCharCode pixelsType("IDAT");
inline constexpr FourCharCode endType("IEND");

/// Width and height in pixels from the file's first chunk; they may be 0. No value where the signature is
/// missing, the first chunk is no IHDR chunk, or a number is larger than the format allows.
inline std::optional<QSize> size(QByteArrayView file) {
    struct FirstChunk {
        quint32_be length;
        quint32_be type;
        quint32_be width;
        quint32_be height;
    };
    static_assert(sizeof(FirstChunk) == 16);
    constexpr quint32 dataLength = 13;
    constexpr quint32 largest = 0x7fffffff;
    const auto chunk = ByteReader(file).record<FirstChunk>(signature.size());
    if (!chunk || !file.startsWith(signature) || chunk->length != dataLength ||
        chunk->type != headerType.value || chunk->width > largest || chunk->height > largest)
        return std::nullopt;
    return QSize(static_cast<int>(chunk->width), static_cast<int>(chunk->height));
}

} // namespace PngHeader

#pragma once

#include "base/FourCharCode.h"

#include <QByteArrayView>
#include <QSize>
#include <QtEndian>

#include <span>

/// The header of an icns file and of each of its elements: a code, and the length of the file or element,
/// which includes these eight bytes. Big-endian.
struct IcnsHeader {
    quint32_be code;
    quint32_be length;
};
static_assert(sizeof(IcnsHeader) == 8);

inline constexpr qsizetype icnsHeaderSize = sizeof(IcnsHeader);

/// A header with `code`. `length` includes the header itself.
IcnsHeader icnsHeader(FourCharCode code, qsizetype length);

inline constexpr FourCharCode icnsMagic("icns");

/// The bytes before packed colours of 128 pixels.
inline constexpr QByteArrayView packedStart("\0\0\0\0", 4);

/// The first bytes of packed ARGB samples.
inline constexpr QByteArrayView argbMark("ARGB");

/// What an element type holds.
enum class IcnsContent {
    Picture, ///< a PNG or JPEG 2000 file, packed ARGB, or plain ARGB samples
    Colors,  ///< red, green and blue packed one after another, or plain ARGB samples
    Mask,    ///< one byte of alpha a pixel
};

/// A known element type.
struct IcnsElementType {
    FourCharCode code;
    IcnsContent content;
    int pixelSize;                ///< of its square picture
    int scale = 1;                ///< pixels per point along a side
    FourCharCode mask = {};       ///< the type of the element with the alpha of Colors
    bool hasLeadingZeros = false; ///< four zero bytes stand before the packed samples

    QSize size() const { return {pixelSize, pixelSize}; }
    int points() const { return pixelSize / scale; }
};

/// The types that hold a picture or a part of one, most pixels first.
std::span<const IcnsElementType> icnsElementTypes();

/// The known type with `code`, or null.
const IcnsElementType* icnsElementType(FourCharCode code);

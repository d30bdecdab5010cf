#pragma once

#include "imaging/icns/IcnsTypes.h"

#include <QByteArrayView>
#include <QSize>

/// How an element's data are written.
enum class IcnsEncoding {
    Unknown,
    Png,
    Jpeg2000,
    PackedArgb,   ///< "ARGB", then four channels, run-length coded
    PackedColors, ///< red, green and blue, run-length coded
    PlainArgb,    ///< samples of four bytes: alpha, red, green, blue
    Mask,         ///< samples of one byte
};

/// What an element of a known type tells of its picture without being decoded.
struct IcnsPictureInfo {
    IcnsEncoding encoding = IcnsEncoding::Unknown;
    /// In pixels. Of a PNG or JPEG 2000 file as its header tells it; invalid where there is none.
    QSize size;
};

/// A file inside (PNG, JPEG 2000) and packed ARGB are told by how they begin, plain samples by their exact
/// length, everything else by the type. Sources: PNG 11.2.2; ISO/IEC 15444-1, A.5.1 and annex I.
IcnsPictureInfo icnsPictureInfo(const IcnsElementType& type, QByteArrayView data);

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

/// Facts about the picture in an element of a known type that are known without decoding it.
struct IcnsPictureInfo {
    IcnsEncoding encoding = IcnsEncoding::Unknown;
    /// In pixels; for a PNG or JPEG 2000 file from its header. Invalid where no size is known.
    QSize size;
};

/// A PNG or JPEG 2000 file and packed ARGB are recognised by their first bytes, plain samples by their exact
/// length, everything else by the type. Sources: PNG 11.2.2; ISO/IEC 15444-1, A.5.1 and annex I.
IcnsPictureInfo icnsPictureInfo(const IcnsElementType& type, QByteArrayView data);

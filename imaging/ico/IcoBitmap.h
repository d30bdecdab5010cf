#pragma once

#include "imaging/image/PictureReader.h"

#include <QByteArrayView>
#include <QSize>

#include <optional>

/// A bitmap inside of a Windows icon file: a BITMAPINFOHEADER, a palette, the colours and a mask of
/// transparent pixels, without a file header. Source: Microsoft, "BITMAPINFOHEADER structure" and "Icons".
struct IcoBitmap {
    QSize size;   ///< in pixels; the header counts the mask's rows too
    int bits = 0; ///< of a pixel: 1, 4, 8, 16, 24 or 32
    bool isFromTop = false;
    QByteArrayView palette; ///< blue, green, red and an unused byte for each colour
    QByteArrayView rest;    ///< the colours and the mask, which may break off

    /// What the header tells. `told` is the size in the icon's list. No value where the header is cut off or
    /// of a kind that is not read: compressed, or of another number of bits.
    static std::optional<IcoBitmap> parse(QByteArrayView data, const QSize& told);

    /// The pixels. Damaged where they break off, OutOfMemory.
    Result<DecodedPicture> picture() const;
};

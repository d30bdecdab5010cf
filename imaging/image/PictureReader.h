#pragma once

#include "base/Result.h"

#include <QByteArrayView>
#include <QImage>
#include <QSize>
#include <QStringList>

#include <optional>

/// A decoded picture: upright, RGBA8888_Premultiplied, sRGB.
struct DecodedPicture {
    QImage raster;
    QStringList warnings; ///< sentences for people, about what could not be used
    /// The picture's size where the raster is a reduced copy of it, or of the part that the renders show;
    /// else empty.
    QSize wholeSize = {};
};

/// What the readers of all formats share.
namespace PictureReader {

/// The most pixels that a picture may have: 16384 × 16384, 1 GiB of raster.
inline constexpr qint64 maximumPixels = 16384LL * 16384LL;

/// The longest side that a picture may have.
inline constexpr qint64 maximumSide = 1000000;

/// Checks a picture's size in pixels: Damaged where it has no pixels, TooLarge beyond the limits. Call it
/// before any memory for pixels is taken.
Result<Done> checkSize(qint64 width, qint64 height);

/// The warning about a file with more pictures than the one that is read.
QString framesWarning();

/// The error for a picture of that many pixels.
Error tooLarge(qint64 width, qint64 height);

/// The most memory that a picture may take besides its pixels while it is read.
inline constexpr qint64 maximumWorkingMemory = qint64{448} << 20;

/// TooLarge where a picture of that size takes `bytes` besides its pixels, and that is more. `kind` says what
/// kind of picture needs them. To be asked before they are taken.
Result<Done> checkWorkingMemory(qint64 bytes, qint64 width, qint64 height, const QString& kind);

/// A raster for a picture of that size: RGBA8888_Premultiplied. Errors as those of `checkSize`, and
/// OutOfMemory.
Result<QImage> newPicture(qint64 width, qint64 height);

/// Whether an EXIF orientation leaves the picture as it is.
bool isUpright(int orientation);

/// `raster` turned upright. `orientation` is the value of the EXIF tag 0x0112: 1 is upright already, as is
/// any value outside 1 to 8. OutOfMemory is the only error.
Result<QImage> upright(QImage raster, int orientation);

/// The orientation that an EXIF block states; no value where it states no orientation. `exif` starts at its
/// TIFF header; the six bytes "Exif\0\0" may stand before it. Source: CIPA DC-008, TIFF 6.0.
std::optional<int> exifOrientation(const QByteArray& exif);

/// The orientation that an XMP packet states of its picture; no value where it states no orientation. Only
/// the first 4 MiB are looked at. Source: ISO 16684-1; "XMP Specification Part 2", TIFF namespace.
std::optional<int> xmpOrientation(QByteArrayView packet);

/// The orientation that EXIF states, or else XMP, or else 1. Both may be empty.
int orientation(const QByteArray& exif, QByteArrayView xmp);

/// The warning for a colour profile that can't be used.
QString profileWarning();

/// The error for a picture that breaks off or is otherwise broken; `format` is its name, `detail` the cause.
Error damaged(const QString& format, const QString& detail);

} // namespace PictureReader

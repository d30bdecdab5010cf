#pragma once

#include "imaging/image/PictureReader.h"
#include "imaging/pixels/ReducedCopies.h"

#include <QByteArray>
#include <QByteArrayView>

#include <array>

/// A format of pictures that are read.
enum class PictureFormat { Png, Jpeg, Tiff, Gif, Bmp, WebP, Ico, Icns, Svg };

/// How a format is recognised and read: a row of the table in PictureFormat.cpp.
struct PictureFormatRow {
    /// Stands for any byte in `starts`.
    static constexpr char anyByte = '?';

    PictureFormat format;
    const char* name; ///< for people
    /// A file of the format begins with one of these.
    std::array<QByteArrayView, 4> starts = {};
    /// Recognises the format by more than its first bytes; null where `starts` are enough.
    bool (*isLikely)(const QByteArray& bytes) = nullptr;
    /// Reads the first picture. A format has either this reader or `readReduced`.
    Result<DecodedPicture> (*read)(const QByteArray& bytes) = nullptr;
    /// The same, but may return a reduced copy: the largest that one of the renders draws from.
    Result<DecodedPicture> (*readReduced)(const QByteArray& bytes,
                                          const ReducedCopies::Renders& renders) = nullptr;
    /// Reads the first picture with the reader that there is.
    Result<DecodedPicture> decode(const QByteArray& bytes, const ReducedCopies::Renders& renders) const {
        return readReduced != nullptr ? readReduced(bytes, renders) : read(bytes);
    }
};

namespace PictureFormats {

/// The row of the format of a file that begins with `bytes`; null where the format is not known.
const PictureFormatRow* find(const QByteArray& bytes);

/// The names of all formats, for the end of a sentence: "PNG, JPEG … or SVG".
QString names();

} // namespace PictureFormats

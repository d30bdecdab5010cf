#pragma once

#include "imaging/image/PictureReader.h"
#include "imaging/pixels/ReducedCopies.h"

#include <QByteArray>
#include <QByteArrayView>

#include <array>

/// A format of pictures that are read.
enum class PictureFormat { Png, Jpeg, Tiff, Gif, Bmp, WebP, Icns, Svg };

/// How a format is told and read: a row of the table in PictureFormat.cpp.
struct PictureFormatRow {
    /// In a start: any byte.
    static constexpr char anyByte = '?';

    PictureFormat format;
    const char* name; ///< for people
    /// A file of the format begins as one of these.
    std::array<QByteArrayView, 4> starts = {};
    /// Tells the format from more than its start; null where the starts are enough.
    bool (*isLikely)(const QByteArray& bytes) = nullptr;
    /// Reads the first picture. Of the two readers a format has one.
    Result<DecodedPicture> (*read)(const QByteArray& bytes) = nullptr;
    /// The same; it may hand over the largest reduced copy that one of the renders draws from.
    Result<DecodedPicture> (*readReduced)(const QByteArray& bytes,
                                          const ReducedCopies::Renders& renders) = nullptr;

    Result<DecodedPicture> decode(const QByteArray& bytes, const ReducedCopies::Renders& renders) const {
        return readReduced != nullptr ? readReduced(bytes, renders) : read(bytes);
    }
};

namespace PictureFormats {

/// The row of the format that `bytes`, or what they are the start of, are of; null where none is known.
const PictureFormatRow* find(const QByteArray& bytes);

/// The names of all, as the end of a sentence: "PNG, JPEG … or SVG".
QString names();

} // namespace PictureFormats

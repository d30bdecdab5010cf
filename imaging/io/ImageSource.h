#pragma once

#include "imaging/image/Image.h"
#include "imaging/image/PictureReader.h"
#include "imaging/pixels/ReducedCopies.h"

#include <QByteArray>
#include <QStringList>

#include <string>

/// A picture as it was loaded.
struct LoadedPicture {
    Image image;
    bool isDrawing = false; ///< drawn anew at each size (SVG)
    QStringList warnings;   ///< sentences for people, of what could not be honoured
};

/// How a picture is to be loaded.
struct LoadOptions {
    /// Every size that it will be drawn in, where that is known. Neither the whole picture nor a reduced copy
    /// is kept that is larger than what these draw from; what is drawn is the same. An icns file keeps its
    /// own pictures.
    ReducedCopies::Renders renders;
};

/// Turns the bytes of a picture into an Image. The format is told by the content, never by a name: PNG, JPEG,
/// TIFF, GIF (first frame), BMP, WebP, icns (largest picture), SVG. Pictures come out upright and in sRGB;
/// one that breaks off, is damaged or has more than 16384 × 16384 pixels is an error. OutOfMemory where
/// memory is short.
namespace ImageSource {

/// An image of the picture's size in pixels. A bitmap comes with reduced copies of itself, each side half as
/// long as in the one before, so that small renders need not read all of it; an icns file with the pictures
/// of all its elements.
Result<LoadedPicture> load(const QByteArray& bytes, const LoadOptions& options = {});

/// As `load`, from the regular file of that name (in the file system's own bytes). Anything else than a
/// regular file is refused without being read.
Result<LoadedPicture> loadFile(const std::string& path, const LoadOptions& options = {});

/// The first picture alone, without reduced copies. An SVG document is drawn at its own size.
Result<DecodedPicture> decode(const QByteArray& bytes);

} // namespace ImageSource

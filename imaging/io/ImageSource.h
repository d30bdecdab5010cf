#pragma once

#include "imaging/image/Image.h"
#include "imaging/image/PictureReader.h"
#include "imaging/pixels/ReducedCopies.h"
#include "imaging/svg/SvgTime.h"

#include <QByteArray>
#include <QStringList>

#include <string>

/// A picture as it was loaded.
struct LoadedPicture {
    Image image;
    QSizeF size;            ///< of the picture in its file, upright
    bool isDrawing = false; ///< drawn anew at each size (SVG)
    QStringList warnings;   ///< sentences for people, about what could not be used
};

/// How a picture is loaded.
struct LoadOptions {
    /// All sizes of icons that the picture will be drawn on, where they are known. Then no bitmap is kept
    /// that is larger than these renders need; the renders stay the same. An icns or ICO file keeps all its
    /// pictures. The fit holds for every render of the image.
    ReducedCopies::Renders renders = {};
    /// How long an SVG document may take to draw.
    SvgTimeLimit svgTime = {};
};

/// Turns the bytes of a picture into an Image. The content decides the format, never the file's name: PNG,
/// JPEG, TIFF, GIF (first frame), BMP, WebP, ICO and icns (largest picture), SVG. Pictures are turned upright
/// and converted to sRGB. A picture that breaks off, is damaged or has more than 16384 × 16384 pixels is an
/// error. OutOfMemory where memory is short.
namespace ImageSource {

/// The most bytes of a file: the largest picture without compression, 16 bits a sample, and room for all data
/// around its pixels.
inline constexpr qint64 maximumFile = 8 * PictureReader::maximumPixels + (64 << 20);

/// An image of the picture's size in pixels. A bitmap gets reduced copies, each with sides half as long as
/// those of the copy before, so that small renders need not read all of it. An icns or ICO file also
/// gets its smaller pictures.
Result<LoadedPicture> load(const QByteArray& bytes, const LoadOptions& options = {});

/// As `load`, from the regular file at `path` (in the file system's own bytes). Anything but a regular file
/// is refused without being read.
Result<LoadedPicture> loadFile(const std::string& path, const LoadOptions& options = {});

/// The first picture only, without reduced copies. An SVG document is drawn at its own size.
Result<DecodedPicture> decode(const QByteArray& bytes);

} // namespace ImageSource

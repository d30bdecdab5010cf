#pragma once

#include "base/Result.h"

#include <QStringView>

/// Pictures that are embedded in an SVG document as "data:" URIs (RFC 2397).
namespace SvgEmbeddedPicture {

/// The limit for the pixels of all pictures in a document together.
inline constexpr qint64 maximumPixels = 32LL << 20;

/// Whether a link is a "data:" URI. White space and control characters in it are passed over.
bool isData(QStringView link);

/// How many pixels the picture in a "data:" URI has. The picture is decoded to see that it is whole. Anything
/// but a PNG or JPEG picture is an error: the drawing library would hand it to any reader that the machine
/// has, also to one for SVG documents.
Result<qint64> pixels(QStringView link);

} // namespace SvgEmbeddedPicture

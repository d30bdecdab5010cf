#pragma once

#include "base/Result.h"

#include <QStringView>

/// Pictures that stand in an SVG document itself, as "data:" URIs (RFC 2397).
namespace SvgEmbeddedPicture {

/// The most pixels that a document's pictures may have in all.
inline constexpr qint64 maximumPixels = 32LL << 20;

/// Whether a link is such a URI, as those see it who pass over white space and control characters.
bool isData(QStringView link);

/// The pixels of the picture in such a URI, which is decoded to see that it is whole. Only PNG and JPEG
/// pictures are let through: the drawing library would hand anything else to whatever readers the machine
/// has, SVG documents among them.
Result<qint64> pixels(QStringView link);

} // namespace SvgEmbeddedPicture

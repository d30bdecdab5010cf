#pragma once

#include "base/Result.h"

#include <QByteArray>

/// Refuses documents that the drawing library can't cope with. The library has no limits of its own that
/// hold: a small document may make it draw for hours, take all memory or end the process. So each document is
/// checked once, as a stream, before anything of it is drawn. SvgReferences checks what is drawn by
/// reference.
namespace SvgGuard {

/// The largest document, unpacked, in bytes.
inline constexpr qsizetype maximumBytes = 64 << 20;
inline constexpr int maximumElements = 200000;
/// How deep elements may be nested.
inline constexpr int maximumDepth = 250;
/// The limits for the characters of text in a document, and in one text element. The time that the layout of
/// a text element takes grows with the square of its characters.
inline constexpr qsizetype maximumText = 20000;
inline constexpr qsizetype maximumTextInOne = 2000;
/// The limit for the characters of one style sheet, and of one attribute other than id, class, href, d and
/// points.
inline constexpr qsizetype maximumStyle = 1 << 20;
/// The limit for the size of letters, in pixels. The library that lays out text counts in 1024ths of a pixel.
inline constexpr double maximumFontSize = 1e6;
/// The limit for the length of the longest line, divided by the length of the shortest dash pattern.
inline constexpr double maximumDashes = 1e6;
/// The limits for octaves of turbulence, and for the numbers of a convolution. Beyond them a filter takes
/// minutes or ends the process. A filter that tiles does so wherever it has nothing to tile, so each of these
/// is refused.
inline constexpr int maximumOctaves = 12;
inline constexpr int maximumKernel = 100;

/// Damaged for a document that is not well-formed. Unsupported for one that declares entities or default
/// attributes, or embeds anything but PNG and JPEG pictures. TooLarge for one that goes beyond the limits.
/// OutOfMemory. Links to other files are not checked: nothing outside of a document is opened.
Result<Done> check(const QByteArray& document);

} // namespace SvgGuard

#pragma once

#include "base/Result.h"

#include <QByteArray>

#include <optional>

/// What the drawing library must not be given. It has no limits of its own that hold: a small document may
/// make it draw for hours, take all memory or end the process. So a document is looked through once, as a
/// stream, before anything of it is drawn; see SvgReferences for what is drawn by reference.
namespace SvgGuard {

/// The largest document, unpacked, in bytes.
inline constexpr qsizetype maximumBytes = 64 << 20;
inline constexpr int maximumElements = 200000;
/// How deep elements may be nested.
inline constexpr int maximumDepth = 250;
/// The characters of text that a document may draw, and one element of it. Laying out takes time that grows
/// with the square of the latter.
inline constexpr qsizetype maximumText = 20000;
inline constexpr qsizetype maximumTextInOne = 2000;
/// The characters of one style sheet, and of one attribute that says how something is drawn.
inline constexpr qsizetype maximumStyle = 1 << 20;
/// The size, in pixels, of the largest letters. The library that lays out text counts in 1024ths of a pixel.
inline constexpr double maximumFontSize = 1e6;
/// The dashes of the longest line, were it drawn in the shortest dashes of the document.
inline constexpr double maximumDashes = 1e6;
/// Beyond these, filters take minutes, or end the process; one that tiles does so wherever it has nothing to
/// tile, and is refused at all.
inline constexpr int maximumOctaves = 12;
inline constexpr int maximumKernel = 100;

/// The error for a document that is not well-formed, declares entities or default attributes, embeds what may
/// not be embedded, or goes beyond the limits. What it links to outside of itself is not its concern: nothing
/// of that is opened.
std::optional<Error> refused(const QByteArray& document);

} // namespace SvgGuard

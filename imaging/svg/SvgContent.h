#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QStringList>

#include <cstddef>

/// What is looked at in an SVG document before a worker gets it.
namespace SvgContent {

/// The largest document, in bytes.
inline constexpr qsizetype mostBytes = 64 << 20;
/// How deeply elements may be nested.
inline constexpr std::size_t maximumDepth = 256;

/// Sentences about parts that are left out of the drawing: pictures and drawings in other files,
/// foreignObject, colours that var() stands for. Where the document is not well-formed, what follows is not
/// looked at. Unsupported for a document that declares an external entity. TooLarge for one that is larger
/// than 64 MiB or nested too deeply. OutOfMemory.
Result<QStringList> leftOut(const QByteArray& document);

/// The first three names, and how many more there are.
QString listed(const QStringList& names);

} // namespace SvgContent

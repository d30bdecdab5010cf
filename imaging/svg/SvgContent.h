#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QStringList>

/// What is looked at in an SVG document before a worker gets it: how large it is, how deeply its elements are
/// nested, and what it links to. Whether it is well-formed does not show here.
namespace SvgContent {

/// How deeply elements may be nested.
inline constexpr int maximumDepth = 256;

/// Sentences about parts that are left out of the drawing: pictures and drawings in other files,
/// foreignObject, colours that var() stands for. Unsupported for a document that declares an external entity.
/// TooLarge for one that is larger than 64 MiB or nested too deeply. OutOfMemory.
Result<QStringList> leftOut(const QByteArray& document);

} // namespace SvgContent

#pragma once

#include "base/Result.h"

#include <QByteArray>
#include <QStringList>

#include <vector>

/// What is looked at in an SVG document before a worker gets it: how large it is, how deeply its elements are
/// nested, what it links to, and the fonts of its texts. Whether it is well-formed does not show here.
struct SvgContent {
    /// How deeply elements may be nested.
    static constexpr int maximumDepth = 256;

    /// Sentences about parts that are left out of the drawing: pictures and drawings in other files,
    /// foreignObject, colours that var() stands for.
    QStringList leftOut;
    /// The font families that texts ask for, each with those that may stand for it. All that a style sheet
    /// names are taken to be a text's.
    std::vector<QStringList> fonts;

    /// Unsupported for a document that declares an external entity. TooLarge for one that is larger than
    /// 64 MiB or nested too deeply. OutOfMemory.
    static Result<SvgContent> of(const QByteArray& document);

    /// The first three names, and how many more there are.
    static QString listed(const QStringList& names);
};

#pragma once

#include "generation/Warning.h"
#include "imaging/io/ImageSource.h"
#include "layouts/LayoutSet.h"

#include <functional>

/// Where the pictures for layouts come from.
struct LayoutSources {
    struct Source {
        QString path; ///< for people
        /// Loads the picture for these renders. None where the picture was not given.
        std::function<Result<LoadedPicture>(const ReducedCopies::Renders& renders)> load = {};
    };

    Source main;
    Source dark = {};
    Source tinted = {};
    Source foreground = {};
    Source monochrome = {};
    /// The text of the main picture's SVG document; empty if it can't be had. Asked only for a drawing.
    std::function<QByteArray()> document = {};
};

/// The pictures for layouts, and what is to be said of them.
struct SourcedPictures {
    LayoutPictures pictures;
    std::vector<Warning> warnings;
};

/// Loads the pictures for the files of `set`, laid on them as `fit` says. Fails as the first source that
/// does; `failed` then gets its path.
Result<SourcedPictures> loadedPictures(const LayoutSet& set, const PictureFit& fit,
                                       const LayoutSources& sources, QString& failed);

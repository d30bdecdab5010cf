#pragma once

#include "generation/IconStyle.h"
#include "imaging/image/Image.h"

#include <QString>

/// The inputs of a generation. Each value is read at the moment of its use, so a change during a generation
/// has an effect from then on.
class GenerationInput {
  public:
    virtual ~GenerationInput() = default;

    /// The source picture; a null image if there is none.
    virtual Image sourceImage() const = 0;

    /// The index in `Platforms::choices`, or -1 if nothing is chosen. An index without a choice acts as 0.
    virtual int platformIndex() const = 0;

    /// The path of the output folder.
    virtual QString outputPathString() const = 0;

    /// Whether percent escapes in `outputPathString` are replaced when files are written (see OutputFolder).
    virtual bool replacesPercentEscapes() const { return true; }

    virtual IconStyle iconStyle() const = 0; ///< the decoration of each icon
};

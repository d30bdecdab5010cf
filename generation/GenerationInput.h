#pragma once

#include "generation/IconStyle.h"
#include "imaging/image/Image.h"

#include <QString>

/// What a generation works from. Each value is asked for at the moment of its use, so a change made while a
/// generation runs counts from there on.
class GenerationInput {
  public:
    virtual ~GenerationInput() = default;

    /// The source picture; a null image where there is none.
    virtual Image sourceImage() const = 0;

    /// The place of what was chosen in `Platforms::choices`; -1 where nothing is. An index without a choice
    /// acts as 0.
    virtual int platformIndex() const = 0;

    /// The path of the output folder.
    virtual QString outputPathString() const = 0;

    virtual IconStyle iconStyle() const = 0;
};

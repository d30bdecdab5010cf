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

    /// 0 iphone, 1 ipad, 2 iphone then ipad, 3 watch, 4 mac, 5 android; -1 nothing chosen; any other acts as
    /// 0.
    virtual int platformIndex() const = 0;

    /// The path of the output folder.
    virtual QString outputPathString() const = 0;

    virtual IconStyle iconStyle() const = 0;
};

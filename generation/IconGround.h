#pragma once

#include "base/Color.h"
#include "base/Result.h"
#include "imaging/pixels/Ground.h"
#include "imaging/pixels/Raster.h"

#include <optional>

/// The opaque colour on which finished icons lie, so that their PNG files have no alpha channel. Without one
/// they stay transparent.
struct IconGround {
    std::optional<Color> color;

    /// `raster` on the ground, if there is one. OutOfMemory is the only error.
    Result<QImage> under(QImage raster) const {
        if (!color)
            return raster;
        if (const Result<Done> own = makeOwn(raster); !own)
            return own.error();
        layOnGround(raster, *color);
        return raster;
    }
};

#pragma once

#include "generation/IconStyle.h"
#include "generation/Warning.h"
#include "layouts/LayoutRenderer.h"

#include <optional>
#include <vector>

/// How icons of layouts look besides their pictures.
struct LayoutLook {
    IconStyle style;
    std::optional<Color> background; ///< opaque; white where it is not chosen
};

/// Warnings about what stores refuse and what systems do to icons themselves, each with the way out. `files`
/// are those that are written, made from `pictures`.
std::vector<Warning> layoutWarnings(const std::vector<LayoutFile>& files, const LayoutPictures& pictures,
                                    const LayoutLook& look);

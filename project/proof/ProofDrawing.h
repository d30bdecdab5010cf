#pragma once

#include "base/Result.h"
#include "project/proof/ProofSheet.h"

#include <QImage>

/// The sheet as one opaque raster, RGBA8888_Premultiplied. Icons stand on it pixel by pixel. TooLarge where
/// it has more pixels than a picture may have, Unsupported where text can't be drawn, OutOfMemory.
Result<QImage> drawnProof(const ProofSheet& sheet);

#pragma once

#include "base/Result.h"
#include "imaging/png/PngStore.h"

#include <QByteArray>
#include <QImage>

#include <vector>

/// A Windows icon file of `rasters` (RGBA8888_Premultiplied), in their order. Microsoft, "The ICO file
/// format": pictures below 256 pixels are bitmaps of 32 bits with an AND mask, others are PNG files, which
/// come from `pngs` if there is one. EmptySize without a picture or where one has no pixels, TooLarge where a
/// side is above 256 pixels or where there are more pictures than 16 bits count, OutOfMemory.
Result<QByteArray> encodeIco(const std::vector<QImage>& rasters, PngStore* pngs = nullptr);

#pragma once

#include "generation/Warning.h"
#include "imaging/io/ImageSource.h"
#include "imaging/pixels/PictureFit.h"

#include <QSize>

#include <vector>

/// The icons that are made from a picture.
struct MadeIcons {
    std::vector<QSize> sizes; ///< in pixels
    PictureFit fit;
};

/// Warnings about a picture before icons are made from it: it is smaller than in one of them, it is not
/// square, or the reader had to ignore a part of it.
std::vector<Warning> pictureWarnings(const LoadedPicture& picture, const MadeIcons& icons);

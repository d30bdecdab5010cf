#pragma once

#include "imaging/io/ImageSource.h"
#include "imaging/pixels/PictureFit.h"

#include <QSizeF>

#include <string>
#include <vector>

/// A picture for small icons.
struct SmallPicture {
    std::string path; ///< in the file system's own encoding
    int side = 0;     ///< the longer side of the largest icon that shows it, in pixels
};

/// The pictures that icons are made from.
struct PictureFiles {
    std::string path; ///< in the file system's own encoding
    std::vector<SmallPicture> small = {};
    PictureFit fit = {};
    bool isTold = true;     ///< a terminal is told after half a second what is read
    double svgSeconds = 10; ///< of processor time, for each SVG picture
};

/// Loads a picture for icons of these sizes in pixels, laid on them as its fit says, with the pictures for
/// small icons as representations of it. Their warnings are among its own, each with its file's name. Fails
/// as ImageSource::loadFile; `failed` then gets the path of the file that can't be loaded.
Result<LoadedPicture> loadPicture(const PictureFiles& files, const std::vector<QSizeF>& icons,
                                  std::string& failed);

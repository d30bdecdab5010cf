#include "cli/common/PictureLoading.h"

#include "cli/common/InputFile.h"
#include "generation/PictureWarnings.h"
#include "imaging/image/SmallIconRep.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>

namespace {

/// Loads one of `files`.
Result<LoadedPicture> loadedFile(const PictureFiles& files, const std::string& path,
                                 const std::vector<QSizeF>& icons, std::string& failed) {
    Result<LoadedPicture> picture =
        InputFile::loadPicture(path, {{icons, files.fit}, {files.svgSeconds}}, files.isTold);
    if (!picture)
        failed = path;
    return picture;
}

/// The icons that the picture itself is drawn on; all of them where those for small icons leave none.
std::vector<QSizeF> largeIcons(const PictureFiles& files, const std::vector<QSizeF>& icons) {
    int smallSide = 0;
    for (const SmallPicture& small : files.small)
        smallSide = std::max(smallSide, small.side);
    std::vector<QSizeF> large;
    std::ranges::copy_if(icons, std::back_inserter(large), [&](const QSizeF& icon) {
        return std::max(icon.width(), icon.height()) > smallSide;
    });
    return large.empty() ? icons : large;
}

} // namespace

Result<LoadedPicture> loadPicture(const PictureFiles& files, const std::vector<QSizeF>& icons,
                                  std::string& failed) {
    Result<LoadedPicture> picture = loadedFile(files, files.path, largeIcons(files, icons), failed);
    if (!picture)
        return picture;
    for (const SmallPicture& small : files.small) {
        std::vector<QSizeF> its;
        std::ranges::copy_if(icons, std::back_inserter(its), [&](const QSizeF& icon) {
            return std::max(icon.width(), icon.height()) <= small.side;
        });
        const Result<LoadedPicture> loaded = loadedFile(files, small.path, its, failed);
        if (!loaded)
            return loaded.error();
        MadeIcons made{{}, files.fit};
        for (const QSizeF& icon : its)
            made.sizes.emplace_back(static_cast<int>(std::ceil(icon.width())),
                                    static_cast<int>(std::ceil(icon.height())));
        for (const Warning& warning : pictureWarnings(*loaded, made))
            picture->warnings << QStringLiteral("%1: %2").arg(InputFile::shown(small.path), warning.text());
        picture->image.addRepresentation(std::make_shared<SmallIconRep>(loaded->image, small.side));
    }
    return picture;
}

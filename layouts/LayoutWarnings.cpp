#include "layouts/LayoutWarnings.h"

#include "imaging/drawing/GraphicsContext.h"

#include <algorithm>
#include <limits>
#include <set>

namespace {

/// Whether `isFound(x, y, alpha)` for some pixel of a small drawing.
template <typename Predicate>
bool isSomewhere(const Image& image, Predicate isFound) {
    constexpr int side = 64;
    // Not a picture for small icons alone.
    const Image main = image.forIcons(std::numeric_limits<int>::max());
    const Result<QImage> small = drawnRaster(main, QSizeF(side, side));
    for (int y = 0; small && y < side; ++y) {
        const uchar* pixel = small->constScanLine(y);
        for (int x = 0; x < side; ++x, pixel += 4) {
            // From the middle, where 1 is the middle of an edge.
            if (isFound((2 * x + 1 - side) / double{side}, (2 * y + 1 - side) / double{side}, pixel[3]))
                return true;
        }
    }
    return false;
}

/// Whether some pixel of the picture is not opaque.
bool hasTransparency(const Image& image) {
    return isSomewhere(image, [](double, double, int alpha) { return alpha < 255; });
}

/// Whether some of the picture lies outside of the circle that touches its edges.
bool leavesCircle(const Image& image) {
    // A pixel that the circle cuts is no part of a corner.
    constexpr double reach = 1.03;
    constexpr int visible = 128;
    return isSomewhere(image, [](double x, double y, int alpha) {
        return x * x + y * y > reach * reach && alpha >= visible;
    });
}

/// The picture that an entry shows.
const Image* shown(LayoutPicture picture, const LayoutPictures& pictures) {
    const std::optional<Image>& front = pictures.foreground;
    if (picture == LayoutPicture::Monochrome && pictures.monochrome)
        return &*pictures.monochrome;
    const bool isFront = picture == LayoutPicture::Foreground || picture == LayoutPicture::Monochrome;
    return isFront && front ? &*front : &pictures.main;
}

/// Whether the system shows a circle of the file at least, whose diameter is the inset.
bool hasSafeCircle(const LayoutFile& file) {
    return file.shape == LayoutFile::Shape::Square && file.inset < 1 && file.picture != LayoutPicture::None;
}

/// The pictures that files with a safe circle show, each once.
std::set<const Image*> shownInCircles(const std::vector<LayoutFile>& files, const LayoutPictures& pictures) {
    std::set<const Image*> images;
    for (const LayoutFile& file : files) {
        if (hasSafeCircle(file))
            images.insert(shown(file.picture, pictures));
    }
    return images;
}

} // namespace

std::vector<Warning> layoutWarnings(const std::vector<LayoutFile>& files, const LayoutPictures& pictures,
                                    const LayoutLook& look) {
    std::vector<Warning> warnings;
    const auto hasGround = [](const LayoutFile& file) { return file.hasGround; };
    const auto isFull = [](const LayoutFile& file) {
        return file.hasGround && file.shape == LayoutFile::Shape::Square;
    };
    const auto leaves = [](const Image* image) { return leavesCircle(*image); };
    if (!look.background && std::ranges::any_of(files, hasGround) && hasTransparency(pictures.main))
        warnings.push_back(
            {QStringLiteral("the picture has transparent parts; where icons need a ground it is white"),
             QStringLiteral("(--background takes another colour)")});
    if (look.style.hasRoundCorners() && std::ranges::any_of(files, isFull))
        warnings.push_back({QStringLiteral("icons that fill their square get rounded corners on the "
                                           "background, but stores and systems cut corners themselves"),
                            QStringLiteral("(make these layouts without --round-corner)")});
    if (std::ranges::any_of(shownInCircles(files, pictures), leaves))
        warnings.push_back(
            {QStringLiteral("the picture's corners leave the circle that every launcher shows, and may be "
                            "cut off in adaptive and maskable icons"),
             QStringLiteral("(--padding 0.15 keeps them in)")});
    return warnings;
}

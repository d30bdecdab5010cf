#include "cli/generate/SetWarnings.h"

#include "imaging/drawing/GraphicsContext.h"

#include <algorithm>
#include <limits>
#include <set>

namespace {

/// The platforms of Apple's store whose systems cut icons to their shape, among those that are written.
QString cutPlatforms(const GenerateOptions& options, const std::vector<PlannedFile>& files) {
    constexpr std::pair<Platform, const char*> names[] = {
        {Platform::Iphone, "iPhone"}, {Platform::Ipad, "iPad"}, {Platform::Watch, "Apple Watch"}};
    QStringList written;
    for (const auto& [platform, name] : names) {
        const bool isWritten =
            std::ranges::find(files, Platforms::idiom(platform), &PlannedFile::idiom) != files.end();
        if (std::ranges::find(options.platforms, platform) != options.platforms.end() && isWritten)
            written << QLatin1String(name);
    }
    if (written.size() < 2)
        return written.join(QString());
    const QString last = written.takeLast();
    return written.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
}

bool hasRoundCorners(const IconStyle& style) {
    return style.roundCorner && style.cornerRadiusPercent > 0;
}

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

QStringList SetWarnings::ofPlatforms(const GenerateOptions& options, const std::vector<PlannedFile>& files) {
    QStringList warnings;
    const QString platforms = cutPlatforms(options, files);
    if (platforms.isEmpty())
        return warnings;
    if (!options.background)
        warnings << QStringLiteral("the icons for %1 have an alpha channel, which the App Store refuses "
                                   "(--background COLOR makes them without one)")
                        .arg(platforms);
    if (hasRoundCorners(options.style))
        warnings << QStringLiteral("the icons for %1 have rounded corners, but the system cuts them itself "
                                   "(make these sets without --round-corner)")
                        .arg(platforms);
    return warnings;
}

QStringList SetWarnings::ofLayouts(const GenerateOptions& options, const std::vector<LayoutFile>& files,
                                   const LayoutPictures& pictures) {
    QStringList warnings;
    const auto hasGround = [](const LayoutFile& file) { return file.hasGround; };
    const auto isFull = [](const LayoutFile& file) {
        return file.hasGround && file.shape == LayoutFile::Shape::Square;
    };
    const auto leaves = [](const Image* image) { return leavesCircle(*image); };
    if (!options.background && std::ranges::any_of(files, hasGround) && hasTransparency(pictures.main))
        warnings << QStringLiteral("the picture has transparent parts; where icons need a ground it is white "
                                   "(--background takes another colour)");
    if (hasRoundCorners(options.style) && std::ranges::any_of(files, isFull))
        warnings << QStringLiteral(
            "icons that fill their square get rounded corners on the background, but stores and systems cut "
            "corners themselves (make these layouts without --round-corner)");
    if (std::ranges::any_of(shownInCircles(files, pictures), leaves))
        warnings << QStringLiteral(
            "the picture's corners leave the circle that every launcher shows, and may be "
            "cut off in adaptive and maskable icons (--padding 0.15 keeps them in)");
    return warnings;
}

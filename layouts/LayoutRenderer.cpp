#include "layouts/LayoutRenderer.h"

#include "imaging/drawing/GraphicsContext.h"
#include "imaging/image/BitmapImageRep.h"
#include "imaging/pixels/Ground.h"
#include "imaging/pixels/Raster.h"

#include <QRect>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <utility>

namespace {

template <typename Change>
void forEachPixel(QImage& raster, Change change) {
    const int width = raster.width();
    for (int y = 0; y < raster.height(); ++y) {
        uchar* pixel = raster.scanLine(y);
        for (int x = 0; x < width; ++x, pixel += 4)
            change(pixel);
    }
}

/// The luminance of a pixel on black (ITU-R BT.709 weights), 0 to 255.
int luminance(const uchar* pixel) {
    constexpr int red = 2126;
    constexpr int green = 7152;
    constexpr int blue = 722;
    return (red * pixel[0] + green * pixel[1] + blue * pixel[2] + 5000) / 10000;
}

/// Makes the raster opaque and grey on black, with the lightest pixel white.
void makeGrey(QImage& raster) {
    int lightest = 1;
    forEachPixel(raster, [&](const uchar* pixel) { lightest = std::max(lightest, luminance(pixel)); });
    forEachPixel(raster, [&](uchar* pixel) {
        const auto grey = static_cast<uchar>((luminance(pixel) * 255 + lightest / 2) / lightest);
        std::fill_n(pixel, 3, grey);
        pixel[3] = 255;
    });
}

/// The smallest rectangle with all pixels that are not transparent.
QRect inkOf(const QImage& raster) {
    int left = raster.width();
    int right = -1;
    int top = raster.height();
    int bottom = -1;
    for (int y = 0; y < raster.height(); ++y) {
        const uchar* row = raster.constScanLine(y);
        for (int x = 0; x < raster.width(); ++x) {
            if (row[4 * x + 3] == 0)
                continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = y;
        }
    }
    return {QPoint(left, top), QPoint(right, bottom)};
}

/// Makes a white shape of the raster: of the picture's own, or, in an opaque picture, of what differs in
/// luminance from its corners. The picture may have a transparent margin.
void makeSilhouette(QImage& raster) {
    const QRect ink = inkOf(raster);
    qint64 opaque = 0;
    forEachPixel(raster, [&](const uchar* pixel) { opaque += pixel[3] == 255 ? 1 : 0; });
    int ground = 0;
    int most = 0;
    if (!ink.isEmpty() && opaque == qint64{ink.width()} * ink.height()) {
        const uchar* const first = raster.constScanLine(ink.top()) + 4 * std::ptrdiff_t{ink.left()};
        const uchar* const last = raster.constScanLine(ink.bottom()) + 4 * std::ptrdiff_t{ink.left()};
        const std::ptrdiff_t right = 4 * (std::ptrdiff_t{ink.width()} - 1);
        ground =
            (luminance(first) + luminance(first + right) + luminance(last) + luminance(last + right)) / 4;
        forEachPixel(raster, [&](const uchar* pixel) {
            if (pixel[3] != 0)
                most = std::max(most, std::abs(luminance(pixel) - ground));
        });
    }
    forEachPixel(raster, [&](uchar* pixel) {
        const bool isOfPicture = most > 0 && pixel[3] != 0;
        const int alpha = isOfPicture ? std::abs(luminance(pixel) - ground) * 255 / most : pixel[3];
        std::fill_n(pixel, 4, static_cast<uchar>(alpha));
    });
}

Path outline(const LayoutFile& file, const IconStyle& style, const QRectF& bounds) {
    switch (file.shape) {
    case LayoutFile::Shape::Circle:
        return Path::bezierPathWithOvalInRect(bounds);
    case LayoutFile::Shape::Rounded:
        return Path::bezierPathWithRoundedRect(bounds, file.radius * bounds.width(),
                                               file.radius * bounds.height());
    case LayoutFile::Shape::Square:
        break;
    }
    if (!style.roundCorner)
        return Path::bezierPathWithRect(bounds);
    const auto radius = static_cast<double>(style.cornerRadiusPercent);
    return Path::bezierPathWithRoundedRect(bounds, radius * bounds.width(), radius * bounds.height());
}

/// An image of that raster.
Image imageOf(const QImage& raster) {
    Image image(QSizeF(raster.size()));
    image.addRepresentation(std::make_shared<BitmapImageRep>(raster));
    return image;
}

/// Where the upper left pixel of a square of that side lies in the middle of a raster of that size.
QPoint middle(int side, const QSize& size) {
    return {(size.width() - side) / 2, (size.height() - side) / 2};
}

/// Whether the pixels of such a picture are drawn as they are.
bool isAsGiven(LayoutPicture picture) {
    return picture == LayoutPicture::Main || picture == LayoutPicture::Dark ||
           picture == LayoutPicture::Foreground;
}

/// Lays the raster on a colour. Copies its pixels first where they are shared.
Result<Done> layOn(const Color& background, QImage& raster) {
    if (Result<Done> own = makeOwn(raster); !own)
        return own;
    layOnGround(raster, background);
    return Done{};
}

} // namespace

bool LayoutPictures::has(LayoutPicture picture) const {
    switch (picture) {
    case LayoutPicture::Main:
    case LayoutPicture::None:
        return true;
    case LayoutPicture::Dark:
        return dark.has_value();
    case LayoutPicture::Tinted:
        return tinted.has_value();
    case LayoutPicture::Foreground:
        return foreground.has_value();
    case LayoutPicture::Monochrome:
        return monochrome.has_value();
    }
    return false;
}

LayoutPicture LayoutPictures::drawnFor(LayoutPicture wanted, const std::set<LayoutPicture>& given) {
    if (given.contains(wanted))
        return wanted;
    return wanted == LayoutPicture::Monochrome ? drawnFor(LayoutPicture::Foreground, given)
                                               : LayoutPicture::Main;
}

int LayoutRenderer::shapeSide(const LayoutFile& file, const QSize& size) {
    const int side = std::min(size.width(), size.height());
    const int margin = static_cast<int>(std::lround(side * (1 - file.inset) / 2));
    return std::max(1, side - 2 * margin);
}

const Image& LayoutRenderer::source(LayoutPicture picture) const {
    const std::pair<LayoutPicture, const std::optional<Image>&> others[] = {
        {LayoutPicture::Dark, m_pictures.dark},
        {LayoutPicture::Tinted, m_pictures.tinted},
        {LayoutPicture::Foreground, m_pictures.foreground},
        {LayoutPicture::Monochrome, m_pictures.monochrome}};
    std::set<LayoutPicture> given;
    for (const auto& [other, image] : others) {
        if (image)
            given.insert(other);
    }
    const LayoutPicture drawn = LayoutPictures::drawnFor(picture, given);
    for (const auto& [other, image] : others) {
        if (other == drawn)
            return *image;
    }
    return m_pictures.main;
}

/// The picture with a side of `inner` pixels, for an icon of `side` pixels.
Result<QImage> LayoutRenderer::drawnPicture(LayoutPicture picture, int side, int inner) const {
    if (picture == LayoutPicture::None) {
        Result<QImage> empty = newRaster(QSize(inner, inner), QImage::Format_RGBA8888_Premultiplied);
        if (empty)
            empty->fill(Qt::transparent);
        return empty;
    }
    Result<QImage> raster = drawnRaster(source(picture).forIcons(side), QSizeF(inner, inner));
    if (!raster || isAsGiven(picture))
        return raster;
    if (const Result<Done> own = makeOwn(*raster); !own)
        return own.error();
    if (picture == LayoutPicture::Tinted)
        makeGrey(*raster);
    if (picture == LayoutPicture::Monochrome)
        makeSilhouette(*raster);
    return raster;
}

/// The image in the file's shape, decorated, on `inner` pixels in the middle of a transparent raster.
Result<QImage> LayoutRenderer::decorated(const Image& image, int inner, const LayoutFile& file,
                                         const QSize& size) const {
    Result<GraphicsContext> context = GraphicsContext::create(QSizeF(size), 1);
    if (!context)
        return context.error();
    const QPoint place = middle(inner, size);
    // The context counts from the bottom.
    const QRectF bounds(place.x(), size.height() - inner - place.y(), inner, inner);
    Path path = outline(file, m_style, bounds);
    if (file.shape != LayoutFile::Shape::Square || m_style.roundCorner) {
        if (const Result<Done> clipped = context->addClip(path); !clipped)
            return clipped.error();
    }
    if (const Result<Done> drawn = context->drawImage(image, bounds); !drawn)
        return drawn.error();
    if (m_style.border) {
        path.setLineWidth(static_cast<double>(m_style.borderWidth) * inner);
        if (const Result<Done> stroked = context->stroke(path, m_style.borderColor); !stroked)
            return stroked.error();
    }
    return context->raster();
}

Result<QImage> LayoutRenderer::shaped(const LayoutFile& file, const QSize& size) const {
    const int side = std::max(size.width(), size.height());
    const int inner = shapeSide(file, size);
    const bool isSquare = file.shape == LayoutFile::Shape::Square;
    const bool isPlain = isSquare && !m_style.roundCorner && !m_style.border;
    const bool isOnGround = file.hasGround && !isSquare;
    if (!isPlain && !isOnGround && isAsGiven(file.picture))
        return decorated(source(file.picture).forIcons(side), inner, file, size);
    Result<QImage> picture = drawnPicture(file.picture, side, inner);
    if (!picture)
        return picture;
    if (isOnGround) {
        if (const Result<Done> laid = layOn(m_background, *picture); !laid)
            return laid.error();
    }
    return isPlain ? placed(*picture, middle(picture->width(), size), size)
                   : decorated(imageOf(*picture), inner, file, size);
}

Result<QImage> LayoutRenderer::raster(const LayoutFile& file, const QSize& size) const {
    Result<QImage> raster = shaped(file, size);
    if (raster && file.hasGround && file.shape == LayoutFile::Shape::Square) {
        if (const Result<Done> laid = layOn(m_background, *raster); !laid)
            return laid.error();
    }
    return raster;
}

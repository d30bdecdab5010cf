#include "generation/IconRenderer.h"

#include "base/StageTimes.h"
#include "imaging/drawing/GraphicsContext.h"
#include "imaging/io/ImageSource.h"
#include "imaging/io/Representations.h"

#include <QLocale>

#include <utility>

namespace {

/// The path is both the clip and the border's outline. Radii are calculated in double precision from the
/// single-precision value.
Path outline(const IconStyle& style, const QRectF& bounds) {
    if (!style.roundCorner)
        return Path::bezierPathWithRect(bounds);
    const double radius = style.cornerRadiusPercent;
    return Path::bezierPathWithRoundedRect(bounds, radius * bounds.width(), radius * bounds.height());
}

/// Draws the picture into the clip, then draws the border.
Result<Image> drawn(const Image& image, const QSizeF& size, const GenerationInput& input, int scale) {
    const QRectF bounds(QPointF(0, 0), size);
    Path path = outline(input.iconStyle(), bounds);
    Result<GraphicsContext> context = GraphicsContext::create(size, scale);
    if (!context)
        return context.error();
    if (input.iconStyle().roundCorner) {
        if (const Result<Done> clipped = context->addClip(path); !clipped)
            return clipped.error();
    }
    if (const Result<Done> done = context->drawImage(image, bounds); !done)
        return done.error();
    const IconStyle style = input.iconStyle();
    if (style.border) {
        path.setLineWidth(static_cast<double>(style.borderWidth) * size.width());
        if (const Result<Done> stroked = context->stroke(path, style.borderColor); !stroked)
            return stroked.error();
    }
    return context->image();
}

} // namespace

Result<Image> IconRenderer::rendered(const Image& image, const QSizeF& size) const {
    const StageTimes::Timer timer(Stage::Decorate);
    Result<Image> render = drawn(image, size, m_input, m_screen.scale());
    if (!render)
        return ofIcon(render.error(), size);
    return render;
}

Result<QImage> IconRenderer::throughTiff(const Image& image) {
    const StageTimes::Timer timer(Stage::Tiff);
    const Result<QByteArray> tiff = TIFFRepresentation(image);
    if (!tiff)
        return tiff.error();
    Result<DecodedPicture> picture = ImageSource::decode(*tiff);
    if (!picture)
        return picture.error();
    return std::move(picture->raster);
}

Error IconRenderer::ofIcon(const Error& error, const QSizeF& size) {
    const auto told = [&](const QString& sentence) {
        const auto number = [](double value) {
            return QString::number(value, 'f', QLocale::FloatingPointShortest);
        };
        return Error{error.code, sentence.arg(number(size.width()), number(size.height()))};
    };
    switch (error.code) {
    case ErrorCode::EmptySize:
        return told(QStringLiteral("an icon of %1 × %2 points can't be made"));
    case ErrorCode::TooLarge:
        return told(QStringLiteral("an icon of %1 × %2 points is too large"));
    case ErrorCode::OutOfMemory:
        return told(QStringLiteral("not enough memory for an icon of %1 × %2 points"));
    default:
        return error;
    }
}

Image IconRenderer::drawImage(const Image& image, const QSizeF& withSize) const {
    return rendered(image, withSize).valueOr(Image(withSize));
}

QImage IconRenderer::getCgiImageRef(const Image* image) {
    return image != nullptr ? throughTiff(*image).valueOr({}) : QImage();
}

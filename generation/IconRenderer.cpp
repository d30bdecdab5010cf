#include "generation/IconRenderer.h"

#include "base/StageTimes.h"
#include "imaging/drawing/GraphicsContext.h"
#include "imaging/io/ImageSource.h"
#include "imaging/io/Representations.h"

namespace {

/// The one path that is both the clip and the border's outline. Radii are computed in double precision from
/// the single-precision value.
Path outline(const IconStyle& style, const QRectF& bounds) {
    if (!style.roundCorner)
        return Path::bezierPathWithRect(bounds);
    const double radius = style.cornerRadiusPercent;
    return Path::bezierPathWithRoundedRect(bounds, radius * bounds.width(), radius * bounds.height());
}

} // namespace

Image IconRenderer::drawImage(const Image& image, const QSizeF& withSize) const {
    const StageTimes::Timer timer(Stage::Decorate);
    const QRectF bounds(QPointF(0, 0), withSize);
    Path path = outline(m_input.iconStyle(), bounds);
    GraphicsContext context(withSize, m_screen.scale());
    if (m_input.iconStyle().roundCorner)
        context.addClip(path);
    context.drawImage(image, bounds);
    const IconStyle style = m_input.iconStyle();
    if (style.border) {
        path.setLineWidth(static_cast<double>(style.borderWidth) * withSize.width());
        context.stroke(path, style.borderColor);
    }
    return context.image();
}

QImage IconRenderer::getCgiImageRef(const Image* image) {
    if (image == nullptr)
        return {};
    const StageTimes::Timer timer(Stage::Tiff);
    Result<DecodedPicture> picture = ImageSource::decode(TIFFRepresentation(*image));
    return picture ? picture->raster : QImage();
}

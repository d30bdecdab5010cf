#include "generation/PictureWarnings.h"

#include "imaging/drawing/GraphicsContext.h"

#include <QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

QString number(double value) {
    return QString::number(value, 'f', QLocale::FloatingPointShortest);
}

/// Compares a picture of `size` with the icons that it is too small for, for example "smaller than the
/// largest icon (40 × 40)". Empty if it is large enough for all icons.
QString comparedWith(const std::vector<QSize>& icons, const QSizeF& size) {
    QSize largest(0, 0);
    for (const QSize& icon : icons)
        largest = largest.expandedTo(icon);
    const bool isNarrower = size.width() < largest.width();
    const bool isLower = size.height() < largest.height();
    const bool isOneIcon = std::ranges::find(icons, largest) != icons.end();
    if (isNarrower && isLower && isOneIcon)
        return QStringLiteral("smaller than the largest icon (%1 × %2)")
            .arg(largest.width())
            .arg(largest.height());
    QStringList parts;
    if (isNarrower)
        parts << QStringLiteral("narrower than the widest icon (%1)").arg(largest.width());
    if (isLower)
        parts << QStringLiteral("lower than the highest icon (%1)").arg(largest.height());
    return parts.join(QStringLiteral(" and "));
}

/// How much larger than in its file a picture is drawn. Empty if it is not enlarged.
QString enlargement(const LoadedPicture& picture, const MadeIcons& icons) {
    const QSizeF& size = picture.size;
    if (picture.isDrawing)
        return {};
    if (icons.fit.isPlain())
        return comparedWith(icons.sizes, size);
    QSizeF largest(0, 0);
    for (const QSize& icon : icons.sizes)
        largest = largest.expandedTo(icons.fit.drawnSize(size, icon));
    // Less than a pixel more comes of rounding a margin.
    if (largest.width() < size.width() + 1 && largest.height() < size.height() + 1)
        return {};
    return QStringLiteral("drawn as large as %1 × %2")
        .arg(std::lround(largest.width()))
        .arg(std::lround(largest.height()));
}

/// What becomes of a picture that is not square.
Warning fitWarning(const PictureFit& fit) {
    switch (fit.shape) {
    case PictureFit::Shape::Stretch:
        break;
    case PictureFit::Shape::Contain:
        return {QStringLiteral("is drawn whole, with two edges of its icons free")};
    case PictureFit::Shape::Cover:
        return {QStringLiteral("is cut off at two edges")};
    }
    return {QStringLiteral("will be stretched"),
            QStringLiteral("(--fit contain and --fit cover keep its shape)")};
}

/// Whether all pixels of a drawing of that size are transparent.
bool isEmpty(const Image& image, const QSizeF& size) {
    const Result<QImage> drawn = drawnRaster(image, size);
    for (int y = 0; drawn && y < drawn->height(); ++y) {
        const uchar* pixels = drawn->constScanLine(y);
        for (int x = 0; x < drawn->width(); ++x) {
            if (pixels[4 * x + 3] != 0)
                return false;
        }
    }
    return static_cast<bool>(drawn);
}

/// Whether the picture shows nothing in the icons, without the pictures for small icons.
bool isEmpty(const LoadedPicture& picture) {
    const Image image = picture.image.forIcons(std::numeric_limits<int>::max());
    // Little of a picture may not show in a small drawing.
    constexpr QSizeF small(16, 16);
    constexpr QSizeF large(1024, 1024);
    return isEmpty(image, small) && isEmpty(image, large);
}

} // namespace

std::vector<Warning> pictureWarnings(const LoadedPicture& picture, const MadeIcons& icons) {
    std::vector<Warning> warnings;
    const QString size =
        QStringLiteral("%1 × %2").arg(number(picture.size.width()), number(picture.size.height()));
    const QString enlarged = enlargement(picture, icons);
    if (!enlarged.isEmpty())
        warnings.push_back(
            {QStringLiteral("the picture (%1) is %2 and will be enlarged").arg(size, enlarged)});
    if (picture.size.width() != picture.size.height()) {
        Warning warning = fitWarning(icons.fit);
        warning.sentence =
            QStringLiteral("the picture (%1) is not square and %2").arg(size, warning.sentence);
        warnings.push_back(std::move(warning));
    }
    if (isEmpty(picture))
        warnings.push_back(
            {QStringLiteral("the picture is empty: all that icons show of it is transparent")});
    for (const QString& sentence : picture.warnings)
        warnings.push_back({sentence});
    return warnings;
}

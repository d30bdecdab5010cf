#include "cli/PictureWarnings.h"

#include <QLocale>

#include <algorithm>

namespace {

QString number(double value) {
    return QString::number(value, 'f', QLocale::FloatingPointShortest);
}

} // namespace

QStringList pictureWarnings(const LoadedPicture& picture, double largestSide) {
    QStringList warnings;
    const QSizeF size = picture.image.size();
    if (!picture.isDrawing && std::min(size.width(), size.height()) < largestSide)
        warnings
            << QStringLiteral(
                   "the picture (%1 × %2) is smaller than the largest icon (%3 × %3) and will be enlarged")
                   .arg(number(size.width()), number(size.height()), number(largestSide));
    if (size.width() != size.height())
        warnings << QStringLiteral("the picture (%1 × %2) is not square and will be stretched")
                        .arg(number(size.width()), number(size.height()));
    return warnings + picture.warnings;
}

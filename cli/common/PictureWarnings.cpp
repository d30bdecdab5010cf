#include "cli/common/PictureWarnings.h"

#include <QLocale>

#include <algorithm>

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

} // namespace

QStringList pictureWarnings(const LoadedPicture& picture, const std::vector<QSize>& sizes) {
    QStringList warnings;
    const QSizeF size = picture.image.size();
    const QString comparison = picture.isDrawing ? QString() : comparedWith(sizes, size);
    if (!comparison.isEmpty())
        warnings << QStringLiteral("the picture (%1 × %2) is %3 and will be enlarged")
                        .arg(number(size.width()), number(size.height()), comparison);
    if (size.width() != size.height())
        warnings << QStringLiteral("the picture (%1 × %2) is not square and will be stretched")
                        .arg(number(size.width()), number(size.height()));
    return warnings + picture.warnings;
}

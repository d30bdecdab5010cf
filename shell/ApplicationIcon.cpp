#include "shell/ApplicationIcon.h"

#include "imaging/drawing/GraphicsContext.h"
#include "imaging/io/ImageSource.h"

#include <QFile>
#include <QPixmap>

#include <array>

QIcon applicationIcon() {
    QFile file(QStringLiteral(":/resources/sample/tobrimax-sample.svg"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const Result<LoadedPicture> picture = ImageSource::load(file.readAll());
    if (!picture)
        return {};
    QIcon icon;
    static constexpr std::array sizes{16, 32, 48, 64, 128};
    for (const int size : sizes) {
        GraphicsContext context(QSizeF(size, size), 1);
        context.drawImage(picture->image, QRectF(0, 0, size, size));
        icon.addPixmap(QPixmap::fromImage(context.image().largestRaster()));
    }
    return icon;
}

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
        if (const Result<QImage> drawn = drawnRaster(picture->image, QSizeF(size, size)))
            icon.addPixmap(QPixmap::fromImage(*drawn));
    }
    return icon;
}

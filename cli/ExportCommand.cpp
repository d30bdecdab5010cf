#include "cli/ExportCommand.h"

#include "cli/common/InputFile.h"
#include "cli/text/Terminal.h"
#include "generation/ImageExport.h"
#include "imaging/drawing/GraphicsContext.h"

#include <cmath>

namespace {

/// The picture in its own size, or laid on `size` if there is one.
Result<QImage> rasterOf(const LoadedPicture& picture, const ExportOptions& options) {
    if (!options.size && !picture.isDrawing && options.fit.isPlain())
        return picture.image.largestRaster();
    const QSizeF own(std::ceil(picture.size.width()), std::ceil(picture.size.height()));
    Result<QImage> raster = drawnRaster(picture.image, options.size ? QSizeF(*options.size) : own);
    if (!raster && raster.error().code == ErrorCode::TooLarge)
        return Error{ErrorCode::TooLarge,
                     QStringLiteral("so many pixels can't be drawn; choose a smaller --size")};
    return raster;
}

} // namespace

int runExport(const ExportOptions& options) {
    LoadOptions loading;
    loading.renders.fit = options.fit;
    loading.svgTime.seconds = options.svgSeconds;
    if (options.size)
        loading.renders.sizes = {QSizeF(*options.size)};
    const Result<LoadedPicture> picture = InputFile::loadPicture(options.picture, loading);
    if (!picture)
        return InputFile::fail(options.picture, picture.error());
    for (const QString& warning : picture->warnings)
        Terminal::warning(warning);
    const Result<QImage> raster = rasterOf(*picture, options);
    if (!raster)
        return InputFile::fail(options.picture, raster.error());
    const Result<Done> written = ImageExport::saveImageInSelectedFormat(options.format, options.out, *raster);
    if (!written) {
        Terminal::error(QStringLiteral("%1: %2").arg(options.out, written.error().sentence));
        return 1;
    }
    return Terminal::print(Terminal::escaped(options.out)) ? 0 : Terminal::outputFailure();
}

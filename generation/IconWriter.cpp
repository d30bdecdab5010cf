#include "generation/IconWriter.h"

#include "base/Log.h"
#include "base/StageTimes.h"
#include "generation/OutputFolder.h"
#include "imaging/io/Representations.h"

#include <utility>

namespace {

/// A bitmap made from the render's TIFF encoding. The PNG file then holds exactly the render's pixels and
/// alpha. The render is freed before the decoding starts.
Result<std::unique_ptr<BitmapImageRep>> throughTiff(Image render) {
    const StageTimes::Timer timer(Stage::Tiff);
    const Result<QByteArray> tiff = TIFFRepresentation(render);
    if (!tiff)
        return tiff.error();
    render = Image();
    return imageRepWithData(*tiff);
}

} // namespace

Result<IconWriter::EncodedIcon> IconWriter::encoded(Image render) const {
    const Result<std::unique_ptr<BitmapImageRep>> bitmap = throughTiff(std::move(render));
    if (!bitmap)
        return bitmap.error();
    const auto png = [&]() -> Result<QByteArray> {
        if (!m_ground.color)
            return representationUsingType(**bitmap, BitmapFileType::PNG, &m_pngs);
        Result<QImage> raster = (*bitmap)->raster();
        if (raster)
            raster = m_ground.under(std::move(*raster));
        return raster ? m_pngs.encoded(*raster, PngChannels::Rgb) : raster.error();
    };
    Result<QByteArray> file = png();
    if (!file)
        return file.error();
    return EncodedIcon{std::move(*file), (*bitmap)->pixelSize()};
}

/// Renders and encodes the icon of `size` points.
Result<IconWriter::EncodedIcon> IconWriter::made(const Image& image, const QSizeF& size) const {
    Result<Image> render = m_renderer.rendered(image, size);
    if (!render)
        return render.error();
    return encoded(std::move(*render));
}

Error IconWriter::fault(const Error& error, const QSizeF& size, const QString& sizeFault) {
    if (error.code == ErrorCode::EmptySize && !sizeFault.isEmpty())
        return {ErrorCode::EmptySize, sizeFault};
    return IconRenderer::ofIcon(error, size);
}

QString IconWriter::appiconsetPath(const QString& idiom) const {
    return OutputFolder::appiconsetPathString(m_input.outputPathString(), idiom);
}

void IconWriter::saveImage(const Image& image, const QSizeF& withSize, const QString& andName,
                           const QString& idiom, const QString& sizeFault) const {
    const Result<Done> folder = m_place.makeFolder(appiconsetPath(idiom));
    if (!folder)
        logLine(QStringLiteral("Error\uFF1A%1").arg(folder.error().sentence));
    const Result<EncodedIcon> icon = made(image, withSize);

    const Result<QString> path = OutputFolder::pngPath(m_input, idiom, andName);
    const QString shownPath = path ? *path : OutputFolder::shownPngPath(appiconsetPath(idiom), andName);
    const auto write = [&]() -> Result<Done> {
        if (!icon)
            return fault(icon.error(), withSize, sizeFault);
        if (!path)
            return path.error();
        const StageTimes::Timer timer(Stage::Write);
        const Result<Done> written = m_place.write(*path, icon->png);
        return written || folder ? written : folder;
    };
    const Result<Done> written = write();
    if (m_observer == nullptr)
        return;
    if (!written)
        m_observer->failed(shownPath, written.error());
    else
        m_observer->fileWritten({idiom, shownPath, icon->pixelSize, icon->png.size()});
}

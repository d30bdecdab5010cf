#include "generation/IconWriter.h"

#include "base/Log.h"
#include "base/StageTimes.h"
#include "files/AtomicFile.h"
#include "files/Folder.h"
#include "generation/OutputFolder.h"
#include "imaging/drawing/GraphicsContext.h"
#include "imaging/io/Representations.h"

#include <QLocale>

#include <utility>

namespace {

/// The PNG encoding of a render and the pixels in it; empty where the render has none.
struct EncodedIcon {
    QByteArray png;
    QSize pixelSize;
};

/// By way of a TIFF encoding and a bitmap made from it, so that the file holds exactly the render's pixels
/// and alpha. Neither the render nor the encoding is kept longer than it is needed.
std::unique_ptr<BitmapImageRep> throughTiff(Image render) {
    const StageTimes::Timer timer(Stage::Tiff);
    const QByteArray tiff = TIFFRepresentation(render);
    render = Image();
    return imageRepWithData(tiff);
}

EncodedIcon encoded(Image render) {
    const std::unique_ptr<BitmapImageRep> bitmap = throughTiff(std::move(render));
    if (!bitmap)
        return {};
    return {representationUsingType(*bitmap, BitmapFileType::PNG), bitmap->pixelSize()};
}

/// Why there is no icon of that size.
Error unmade(const QSizeF& size) {
    const auto number = [](double value) {
        return QString::number(value, 'f', QLocale::FloatingPointShortest);
    };
    const bool isTooLarge =
        size.width() * size.height() > static_cast<double>(GraphicsContext::maximumPixels);
    const QString sentence = isTooLarge ? QStringLiteral("an icon of %1 × %2 points is too large")
                                        : QStringLiteral("an icon of %1 × %2 points can't be made");
    return {isTooLarge ? ErrorCode::TooLarge : ErrorCode::EmptySize,
            sentence.arg(number(size.width()), number(size.height()))};
}

} // namespace

QString IconWriter::appiconsetPath(const QString& idiom) const {
    return OutputFolder::appiconsetPathString(m_input.outputPathString(), idiom);
}

void IconWriter::saveImage(const Image& image, const QSizeF& withSize, const QString& andName,
                           const QString& idiom) const {
    const Result<Done> folder = Folder::create(appiconsetPath(idiom));
    if (!folder)
        logLine(QStringLiteral("Error\uFF1A%1").arg(folder.error().sentence));
    const EncodedIcon icon = encoded(m_renderer.drawImage(image, withSize));

    const std::optional<QString> path = OutputFolder::pngPath(appiconsetPath(idiom), andName);
    const QString shownPath = path.value_or(OutputFolder::shownPngPath(appiconsetPath(idiom), andName));
    std::optional<Error> error;
    if (icon.png.isEmpty()) {
        error = unmade(withSize);
    } else if (!path) {
        error = Error{ErrorCode::NotAPath, QStringLiteral("not a path inside the output folder")};
    } else {
        const StageTimes::Timer timer(Stage::Write);
        if (const Result<Done> written = AtomicFile::write(*path, icon.png); !written)
            error = folder ? written.error() : folder.error();
    }
    if (m_observer == nullptr)
        return;
    if (error)
        m_observer->failed(shownPath, *error);
    else
        m_observer->fileWritten({idiom, shownPath, icon.pixelSize, icon.png.size()});
}

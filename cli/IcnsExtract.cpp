#include "cli/IcnsCommands.h"
#include "cli/common/InputFile.h"
#include "cli/text/Terminal.h"
#include "files/AtomicFile.h"
#include "files/FilePath.h"
#include "files/Folder.h"
#include "imaging/icns/IcnsEncoding.h"
#include "imaging/png/PngWriter.h"

namespace {

struct Extracted {
    QByteArray png;
    QSize size;
};

/// An element's picture as a PNG file. A picture that is stored as PNG is returned unchanged; every other
/// picture is encoded as PNG with its stored colours.
Result<Extracted> extracted(const IcnsReader& reader, const IcnsElement& element) {
    const IcnsPictureInfo info = icnsPictureInfo(*icnsElementType(element.type), element.data);
    if (info.encoding == IcnsEncoding::Png) {
        // It is decoded all the same, so that a damaged one is not written.
        const Result<DecodedPicture> picture = reader.picture(element);
        if (!picture)
            return picture.error();
        return Extracted{element.data.toByteArray(), picture->raster.size()};
    }
    const Result<QImage> samples = reader.samples(element);
    if (!samples)
        return samples.error();
    Result<QByteArray> png = encodePng(*samples);
    if (!png)
        return png.error();
    return Extracted{std::move(*png), samples->size()};
}

} // namespace

int runIcnsExtract(const IcnsExtractOptions& options) {
    const std::optional<InputFile::IcnsFile> file = InputFile::openIcns(options.file);
    if (!file)
        return 1;
    const Result<std::vector<IcnsElement>> elements = file->reader.pictureElements();
    if (!elements)
        return InputFile::fail(options.file, elements.error());
    if (elements->empty())
        return InputFile::fail(
            options.file,
            {ErrorCode::Unsupported, QStringLiteral("it has no picture of a kind that is read here")});
    if (const Result<Done> made = Folder::create(options.out); !made) {
        Terminal::error(made.error().sentence);
        return 1;
    }
    int status = 0;
    for (const IcnsElement& element : *elements) {
        const Result<Extracted> picture = extracted(file->reader, element);
        if (!picture) {
            status = InputFile::fail(options.file, picture.error());
            continue;
        }
        const QString name = QStringLiteral("%1_%2x%3.png")
                                 .arg(element.type.text())
                                 .arg(picture->size.width())
                                 .arg(picture->size.height());
        const QString path = appendingPathComponent(options.out, name);
        if (const Result<Done> written = AtomicFile::write(path, picture->png); !written) {
            Terminal::error(QStringLiteral("%1: %2").arg(path, written.error().sentence));
            status = 1;
        } else if (!Terminal::print(Terminal::escaped(path))) {
            return Terminal::outputFailure();
        }
    }
    return status;
}

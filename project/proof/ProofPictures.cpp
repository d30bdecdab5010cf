#include "project/proof/ProofPictures.h"

#include "imaging/drawing/GraphicsContext.h"
#include "imaging/icns/IcnsEncoding.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/ico/IcoReader.h"
#include "imaging/io/ImageSource.h"
#include "imaging/png/PngReader.h"
#include "imaging/png/PngWriter.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace {

constexpr QByteArrayView pngMagic("\x89PNG\r\n\x1a\n");
constexpr QByteArrayView icnsStart("icns");
constexpr QByteArrayView icoMagic("\0\0\1\0", 4);

bool isSvg(const QByteArray& file) {
    QXmlStreamReader reader(file);
    return reader.readNextStartElement() && reader.name() == QLatin1String("svg");
}

Result<ProofPicture> pngPicture(const QByteArray& file) {
    Result<DecodedPicture> picture = readPng(file);
    if (!picture)
        return picture.error();
    return ProofPicture{std::move(picture->raster), file};
}

Result<ProofPicture> svgPicture(const QByteArray& file) {
    const Result<LoadedPicture> drawing = ImageSource::load(file);
    if (!drawing)
        return drawing.error();
    const QSizeF size = drawing->image.size().scaled(proofDrawingSide, proofDrawingSide, Qt::KeepAspectRatio);
    Result<QImage> raster = drawnRaster(drawing->image, size);
    if (!raster)
        return raster.error();
    return ProofPicture{std::move(*raster), file, true};
}

Result<ProofPicture> elementPicture(const IcnsReader& reader, const IcnsElement& element) {
    Result<DecodedPicture> picture = reader.picture(element);
    if (!picture)
        return picture.error();
    ProofPicture shown{std::move(picture->raster), {}};
    shown.element = element.type;
    if (icnsPictureInfo(*icnsElementType(element.type), element.data).encoding == IcnsEncoding::Png) {
        shown.bytes = element.data.toByteArray();
        return shown;
    }
    const Result<QImage> samples = reader.samples(element);
    if (!samples)
        return samples.error();
    Result<QByteArray> png = encodePng(*samples);
    if (!png)
        return png.error();
    shown.bytes = std::move(*png);
    return shown;
}

/// The images of a Windows icon file, smallest first, as such files list them.
Result<ProofPictures> icoPictures(const QByteArray& file) {
    const Result<IcoReader> reader = IcoReader::open(file);
    if (!reader)
        return reader.error();
    ProofPictures found;
    std::vector<IcoReader::Entry> entries = reader->entries();
    std::ranges::reverse(entries);
    for (const IcoReader::Entry& entry : entries) {
        Result<DecodedPicture> picture = reader->picture(entry);
        if (!picture)
            return picture.error();
        Result<QByteArray> png = entry.data.startsWith(pngMagic)
                                     ? Result<QByteArray>(entry.data.toByteArray())
                                     : encodePng(picture->raster);
        if (!png)
            return png.error();
        found.pictures.push_back({std::move(picture->raster), std::move(*png)});
    }
    return found;
}

} // namespace

bool isProofPicture(const QByteArray& file) {
    return file.startsWith(pngMagic) || file.startsWith(icnsStart) || file.startsWith(icoMagic) ||
           isSvg(file);
}

Result<ProofPictures> proofPictures(const QByteArray& file) {
    if (file.startsWith(icnsStart))
        return proofPicturesOfIcns(file);
    if (file.startsWith(icoMagic))
        return icoPictures(file);
    Result<ProofPicture> picture = file.startsWith(pngMagic) ? pngPicture(file) : svgPicture(file);
    if (!picture)
        return picture.error();
    return ProofPictures{{std::move(*picture)}, {}};
}

Result<ProofPictures> proofPicturesOfIcns(const QByteArray& file) {
    const Result<IcnsReader> reader = IcnsReader::open(file);
    if (!reader)
        return reader.error();
    const Result<std::vector<IcnsElement>> elements = reader->pictureElements();
    if (!elements)
        return elements.error();
    ProofPictures found;
    for (const IcnsElement& element : *elements) {
        Result<ProofPicture> picture = elementPicture(*reader, element);
        if (picture)
            found.pictures.push_back(std::move(*picture));
        else if (picture.error().code == ErrorCode::OutOfMemory)
            return picture.error();
        else
            found.failures.push_back({element.type, picture.error().sentence});
    }
    return found;
}

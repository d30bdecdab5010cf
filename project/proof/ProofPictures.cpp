#include "project/proof/ProofPictures.h"

#include "base/ByteReader.h"
#include "imaging/drawing/GraphicsContext.h"
#include "imaging/icns/IcnsEncoding.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/image/PictureReader.h"
#include "imaging/io/ImageSource.h"
#include "imaging/pixels/Premultiplication.h"
#include "imaging/pixels/Raster.h"
#include "imaging/png/PngReader.h"
#include "imaging/png/PngWriter.h"

#include <QXmlStreamReader>

#include <optional>

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

/// An entry of a Windows icon file's table.
struct IcoEntry {
    quint8 width;
    quint8 height;
    quint8 colors;
    quint8 reserved;
    quint16_le planes;
    quint16_le bits;
    quint32_le length;
    quint32_le offset;
};
static_assert(sizeof(IcoEntry) == 16);

Error damagedIcon() {
    return PictureReader::damaged(QStringLiteral("ICO"), QStringLiteral("it breaks off"));
}

/// A bitmap of 32 bits: a header of 40 bytes, then B, G, R, A from the bottom row up. The mask behind it
/// tells nothing that the alpha channel does not.
Result<ProofPicture> bitmapPicture(const ByteReader& bitmap) {
    constexpr quint32 headerSize = 40;
    constexpr int mostPixels = 256;
    const auto size = bitmap.littleEndian<quint32>(0);
    const auto width = bitmap.littleEndian<qint32>(4);
    const auto height = bitmap.littleEndian<qint32>(8);
    const auto bits = bitmap.littleEndian<quint16>(14);
    if (!bits)
        return damagedIcon();
    if (*size != headerSize || *bits != 32 || *width < 1 || *width > mostPixels || *height < 2 ||
        *height > 2 * mostPixels)
        return Error{ErrorCode::Unsupported, QStringLiteral("an icon of this kind is not read")};
    const QSize pixels(*width, *height / 2);
    const auto samples = bitmap.slice(headerSize, qsizetype{4} * pixels.width() * pixels.height());
    if (!samples)
        return damagedIcon();
    Result<QImage> straight = newRaster(pixels, QImage::Format_RGBA8888);
    if (!straight)
        return straight.error();
    const char* from = samples->view().data();
    for (int y = pixels.height() - 1; y >= 0; --y) {
        uchar* to = straight->scanLine(y);
        for (int x = 0; x < pixels.width(); ++x, to += 4, from += 4) {
            to[0] = static_cast<uchar>(from[2]);
            to[1] = static_cast<uchar>(from[1]);
            to[2] = static_cast<uchar>(from[0]);
            to[3] = static_cast<uchar>(from[3]);
        }
    }
    Result<QByteArray> png = encodePng(*straight);
    if (!png)
        return png.error();
    // A row of pixels of four bytes has no padding.
    const std::size_t count =
        static_cast<std::size_t>(pixels.width()) * static_cast<std::size_t>(pixels.height());
    premultiply(straight->constBits(), straight->bits(), count);
    straight->reinterpretAsFormat(QImage::Format_RGBA8888_Premultiplied);
    return ProofPicture{std::move(*straight), std::move(*png)};
}

Result<ProofPictures> icoPictures(const QByteArray& file) {
    const ByteReader reader(file);
    const auto count = reader.littleEndian<quint16>(4);
    ProofPictures found;
    for (int i = 0; i < count.value_or(0); ++i) {
        constexpr qsizetype tableStart = 6;
        const auto entry = reader.record<IcoEntry>(tableStart, i);
        const auto part = entry ? reader.slice(entry->offset, entry->length) : std::nullopt;
        if (!part)
            return damagedIcon();
        Result<ProofPicture> picture =
            part->view().startsWith(pngMagic) ? pngPicture(part->view().toByteArray()) : bitmapPicture(*part);
        if (!picture)
            return picture.error();
        found.pictures.push_back(std::move(*picture));
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

#include "imaging/io/ImageSource.h"

#include "base/StageTimes.h"
#include "files/RegularFile.h"
#include "imaging/formats/GifReader.h"
#include "imaging/formats/JpegReader.h"
#include "imaging/formats/QtPictureReader.h"
#include "imaging/formats/TiffReader.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/image/BitmapImageRep.h"
#include "imaging/pixels/ReducedCopies.h"
#include "imaging/pixels/Resampler.h"
#include "imaging/png/PngReader.h"
#include "imaging/svg/SvgDocument.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace {

/// A reader may hand over the reduced copy that the renders draw from, in place of the whole
/// picture.
using Reader = Result<DecodedPicture> (*)(const QByteArray&, const ReducedCopies::Renders& renders);

/// A reader that always hands over the whole picture.
template <Result<DecodedPicture> (*read)(const QByteArray&)>
Result<DecodedPicture> whole(const QByteArray& bytes, const ReducedCopies::Renders& /*renders*/) {
    return read(bytes);
}

Result<DecodedPicture> readIcns(const QByteArray& bytes) {
    const Result<IcnsReader> reader = IcnsReader::open(bytes);
    if (!reader)
        return reader.error();
    return reader->largestPicture();
}

/// The reader of the bitmap format that `bytes` begin as, or null.
Reader bitmapReader(const QByteArray& bytes) {
    struct Signature {
        QByteArray start;
        Reader reader;
    };
    static const Signature signatures[] = {
        {QByteArray("\x89PNG\r\n\x1a\n", 8), readPng}, {QByteArray("\xff\xd8\xff", 3), readJpeg},
        {QByteArray("II\x2a\0", 4), whole<readTiff>},  {QByteArray("MM\0\x2a", 4), whole<readTiff>},
        {QByteArray("II\x2b\0", 4), whole<readTiff>},  {QByteArray("MM\0\x2b", 4), whole<readTiff>},
        {QByteArray("GIF87a", 6), whole<readGif>},     {QByteArray("GIF89a", 6), whole<readGif>},
        {QByteArray("icns", 4), whole<readIcns>},      {QByteArray("BM", 2), whole<readBmp>},
    };
    for (const Signature& signature : signatures) {
        if (bytes.startsWith(signature.start))
            return signature.reader;
    }
    const bool isWebP = bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP";
    return isWebP ? whole<readWebP> : nullptr;
}

/// Whether `bytes` may be an SVG document: XML with an svg element, or such a document compressed.
bool looksLikeSvg(const QByteArray& bytes) {
    if (bytes.startsWith("\x1f\x8b"))
        return true;
    const bool isUtf16 = bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff");
    constexpr qsizetype prologue = 65536;
    const QString text = isUtf16 ? QString::fromUtf16(reinterpret_cast<const char16_t*>(bytes.constData()),
                                                      std::min(prologue, bytes.size()) / 2)
                                 : QString::fromUtf8(bytes.left(prologue));
    QStringView view = text;
    if (view.startsWith(QChar(0xfeff)))
        view = view.sliced(1);
    return view.trimmed().startsWith(u'<') && (isUtf16 || view.contains(QLatin1String("svg")));
}

Error noMemory() {
    return {ErrorCode::TooLarge, QStringLiteral("not enough memory for the picture")};
}

Error unknownFormat() {
    return {ErrorCode::UnknownFormat,
            QStringLiteral("not a picture (of PNG, JPEG, TIFF, GIF, BMP, WebP, icns or SVG)")};
}

/// The largest picture without compression, 16 bits a sample, with room for what stands around its pixels.
constexpr qint64 maximumFile = 8 * PictureReader::maximumPixels + (64 << 20);

std::optional<Error> refusedStart(const QByteArray& start) {
    if (start.isEmpty())
        return Error{ErrorCode::UnknownFormat, QStringLiteral("the file is empty")};
    if (bitmapReader(start) == nullptr && !looksLikeSvg(start))
        return unknownFormat();
    return std::nullopt;
}

} // namespace

Result<DecodedPicture> ImageSource::decode(const QByteArray& bytes) {
    if (const Reader reader = bitmapReader(bytes))
        return reader(bytes, std::nullopt);
    if (!looksLikeSvg(bytes))
        return unknownFormat();
    const Result<std::shared_ptr<const SvgDocument>> document = SvgDocument::fromBytes(bytes);
    if (!document)
        return document.error();
    const QSizeF size = (*document)->size();
    const double width = std::ceil(size.width());
    const double height = std::ceil(size.height());
    constexpr auto limit = static_cast<double>(PictureReader::maximumPixels);
    if (const std::optional<Error> refused =
            PictureReader::refusedSize(static_cast<qint64>(std::min(width, limit + 1)),
                                       static_cast<qint64>(std::min(height, limit + 1))))
        return *refused;
    QImage raster = (*document)->rendered({0, 0, width, static_cast<int>(width)},
                                          {0, 0, height, static_cast<int>(height)});
    if (raster.isNull())
        return PictureReader::damaged(QStringLiteral("SVG"), QStringLiteral("it can't be drawn"));
    return DecodedPicture{std::move(raster), {}};
}

namespace {

/// `raster`'s reduced copy of that size, which may be its own. Null where memory is short.
QImage reduced(QImage raster, const QSize& size) {
    const StageTimes::Timer timer(Stage::Reduce);
    while (!raster.isNull() && raster.size() != size)
        raster = stretched(raster, ReducedCopies::nextSize(raster.size()));
    return raster;
}

/// Adds reduced copies of `raster`, each side half as long as in the one before. None is made in the size of
/// a representation that is there already. False where memory is short.
bool addReducedCopies(Image& image, QImage raster) {
    const StageTimes::Timer timer(Stage::Reduce);
    const auto has = [&](const QSize& size) {
        return std::ranges::any_of(image.representations(), [&](const auto& representation) {
            return representation->pixelSize() == size;
        });
    };
    using ReducedCopies::nextSize;
    for (QSize size = nextSize(raster.size()); size != raster.size(); size = nextSize(size)) {
        raster = stretched(raster, size);
        if (raster.isNull())
            return false;
        if (!has(size))
            image.addRepresentation(std::make_shared<BitmapImageRep>(raster));
    }
    return true;
}

/// Every picture of an icns file, so that each size is drawn from what was made for it. The largest must be
/// whole.
Result<LoadedPicture> loadIcns(const QByteArray& bytes) {
    const Result<IcnsReader> reader = IcnsReader::open(bytes);
    if (!reader)
        return reader.error();
    Result<DecodedPicture> largest = reader->largestPicture();
    if (!largest)
        return largest.error();
    LoadedPicture result{Image(largest->raster.size()), false, std::move(largest->warnings)};
    result.image.addRepresentation(std::make_shared<BitmapImageRep>(largest->raster));
    for (const IcnsElement& element : reader->pictureElements()) {
        if (element.type == reader->largestElement()->type)
            continue;
        Result<DecodedPicture> picture = reader->picture(element);
        if (picture)
            result.image.addRepresentation(std::make_shared<BitmapImageRep>(std::move(picture->raster)));
        else
            result.warnings << QStringLiteral("the element %1 is passed over: %2")
                                   .arg(element.type.text(), picture.error().sentence);
    }
    if (!addReducedCopies(result.image, std::move(largest->raster)))
        return noMemory();
    return result;
}

} // namespace

Result<LoadedPicture> ImageSource::load(const QByteArray& bytes, const LoadOptions& options) {
    const StageTimes::Timer timer(Stage::Decode);
    if (const std::optional<Error> refused = refusedStart(bytes))
        return *refused;
    if (bitmapReader(bytes) == whole<readIcns>)
        return loadIcns(bytes);
    if (bitmapReader(bytes) == nullptr) {
        const Result<std::shared_ptr<const SvgDocument>> document = SvgDocument::fromBytes(bytes);
        if (!document)
            return document.error();
        LoadedPicture picture{Image((*document)->size()), true, {}};
        picture.image.addRepresentation(*document);
        return picture;
    }
    Result<DecodedPicture> decoded = bitmapReader(bytes)(bytes, options.renders);
    if (!decoded)
        return decoded.error();
    if (decoded->raster.isNull())
        return noMemory();
    const QSize size = decoded->wholeSize.isEmpty() ? decoded->raster.size() : decoded->wholeSize;
    LoadedPicture picture{Image(size), false, std::move(decoded->warnings)};
    QImage largest = reduced(std::move(decoded->raster), ReducedCopies::largestNeeded(size, options.renders));
    if (largest.isNull())
        return noMemory();
    picture.image.addRepresentation(std::make_shared<BitmapImageRep>(largest));
    if (!addReducedCopies(picture.image, std::move(largest)))
        return noMemory();
    return picture;
}

Result<LoadedPicture> ImageSource::loadFile(const std::string& path, const LoadOptions& options) {
    const StageTimes::Timer timer(Stage::Decode);
    const Result<QByteArray> bytes = RegularFile::read(path, maximumFile, refusedStart);
    if (!bytes)
        return bytes.error();
    return load(*bytes, options);
}

#include "imaging/io/ImageSource.h"

#include "base/StageTimes.h"
#include "files/RegularFile.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/image/BitmapImageRep.h"
#include "imaging/io/PictureFormat.h"
#include "imaging/pixels/ReducedCopies.h"
#include "imaging/pixels/Resampler.h"
#include "imaging/svg/SvgDocument.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace {

Error noMemory() {
    return {ErrorCode::TooLarge, QStringLiteral("not enough memory for the picture")};
}

Error unknownFormat() {
    return {ErrorCode::UnknownFormat, QStringLiteral("not a picture (of %1)").arg(PictureFormats::names())};
}

/// The largest picture without compression, 16 bits a sample, with room for what stands around its pixels.
constexpr qint64 maximumFile = 8 * PictureReader::maximumPixels + (64 << 20);

/// The format of a file that begins with `start`.
Result<const PictureFormatRow*> formatOf(const QByteArray& start) {
    if (start.isEmpty())
        return Error{ErrorCode::UnknownFormat, QStringLiteral("the file is empty")};
    const PictureFormatRow* format = PictureFormats::find(start);
    if (format == nullptr)
        return unknownFormat();
    return format;
}

std::optional<Error> refusedStart(const QByteArray& start) {
    const Result<const PictureFormatRow*> format = formatOf(start);
    return format ? std::nullopt : std::optional(format.error());
}

} // namespace

Result<DecodedPicture> ImageSource::decode(const QByteArray& bytes) {
    const PictureFormatRow* format = PictureFormats::find(bytes);
    return format != nullptr ? format->decode(bytes, std::nullopt) : unknownFormat();
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

Result<LoadedPicture> loadSvg(const QByteArray& bytes) {
    const Result<std::shared_ptr<const SvgDocument>> document = SvgDocument::fromBytes(bytes);
    if (!document)
        return document.error();
    LoadedPicture picture{Image((*document)->size()), true, {}};
    picture.image.addRepresentation(*document);
    return picture;
}

/// The one picture of a file.
Result<LoadedPicture> loadBitmap(const PictureFormatRow& format, const QByteArray& bytes,
                                 const ReducedCopies::Renders& renders) {
    Result<DecodedPicture> decoded = format.decode(bytes, renders);
    if (!decoded)
        return decoded.error();
    if (decoded->raster.isNull())
        return noMemory();
    const QSize size = decoded->wholeSize.isEmpty() ? decoded->raster.size() : decoded->wholeSize;
    LoadedPicture picture{Image(size), false, std::move(decoded->warnings)};
    QImage largest = reduced(std::move(decoded->raster), ReducedCopies::largestNeeded(size, renders));
    if (largest.isNull())
        return noMemory();
    picture.image.addRepresentation(std::make_shared<BitmapImageRep>(largest));
    if (!addReducedCopies(picture.image, std::move(largest)))
        return noMemory();
    return picture;
}

} // namespace

Result<LoadedPicture> ImageSource::load(const QByteArray& bytes, const LoadOptions& options) {
    const StageTimes::Timer timer(Stage::Decode);
    const Result<const PictureFormatRow*> format = formatOf(bytes);
    if (!format)
        return format.error();
    switch ((*format)->format) {
    case PictureFormat::Icns:
        return loadIcns(bytes);
    case PictureFormat::Svg:
        return loadSvg(bytes);
    default:
        return loadBitmap(**format, bytes, options.renders);
    }
}

Result<LoadedPicture> ImageSource::loadFile(const std::string& path, const LoadOptions& options) {
    const StageTimes::Timer timer(Stage::Decode);
    const Result<QByteArray> bytes = RegularFile::read(path, maximumFile, refusedStart);
    if (!bytes)
        return bytes.error();
    return load(*bytes, options);
}

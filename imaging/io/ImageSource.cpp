#include "imaging/io/ImageSource.h"

#include "base/ShortMemory.h"
#include "base/StageTimes.h"
#include "files/RegularFile.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/image/BitmapImageRep.h"
#include "imaging/io/PictureFormat.h"
#include "imaging/pixels/ReducedCopies.h"
#include "imaging/pixels/Resampler.h"
#include "imaging/svg/SvgDocument.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace {

Error unknownFormat() {
    return {ErrorCode::UnknownFormat, QStringLiteral("not a picture (of %1)").arg(PictureFormats::names())};
}

/// The format of a file that begins with `start`.
Result<const PictureFormatRow*> formatOf(const QByteArray& start) {
    if (start.isEmpty())
        return Error{ErrorCode::UnknownFormat, QStringLiteral("the file is empty")};
    const PictureFormatRow* format = PictureFormats::find(start);
    if (format == nullptr)
        return unknownFormat();
    return format;
}

/// How much is to be read of a file that begins with `start`.
Result<qint64> lengthOf(const QByteArray& start) {
    const Result<const PictureFormatRow*> format = formatOf(start);
    if (!format)
        return format.error();
    if ((*format)->format == PictureFormat::Icns)
        return IcnsReader::lengthToRead(start);
    return std::numeric_limits<qint64>::max();
}

/// The reduced copy of `raster` that has `size`, which may be the raster's own size.
Result<QImage> reduced(QImage raster, const QSize& size) {
    const StageTimes::Timer timer(Stage::Reduce);
    while (raster.size() != size) {
        Result<QImage> next = stretched(raster, ReducedCopies::nextSize(raster.size()));
        if (!next)
            return next;
        raster = std::move(*next);
    }
    return raster;
}

/// Adds reduced copies of `raster`. Each copy's sides are half as long as those of the copy before. A size
/// that already has a representation is left out.
Result<Done> addReducedCopies(Image& image, QImage raster) {
    const StageTimes::Timer timer(Stage::Reduce);
    const auto has = [&](const QSize& size) {
        return std::ranges::any_of(image.representations(), [&](const auto& representation) {
            return representation->pixelSize() == size;
        });
    };
    using ReducedCopies::nextSize;
    for (QSize size = nextSize(raster.size()); size != raster.size(); size = nextSize(size)) {
        Result<QImage> next = stretched(raster, size);
        if (!next)
            return next.error();
        raster = std::move(*next);
        if (!has(size))
            image.addRepresentation(std::make_shared<BitmapImageRep>(raster));
    }
    return Done{};
}

/// Loads every picture of an icns file, so that each size is drawn from the picture made for it. Fails where
/// the largest picture is damaged; smaller damaged ones are left out with a warning.
Result<LoadedPicture> loadIcns(const QByteArray& bytes) {
    const Result<IcnsReader> reader = IcnsReader::open(bytes);
    if (!reader)
        return reader.error();
    Result<DecodedPicture> largest = reader->largestPicture();
    if (!largest)
        return largest.error();
    LoadedPicture result{Image(largest->raster.size()), false, std::move(largest->warnings)};
    result.image.addRepresentation(std::make_shared<BitmapImageRep>(largest->raster));
    const Result<std::vector<IcnsElement>> elements = reader->pictureElements();
    if (!elements)
        return elements.error();
    for (const IcnsElement& element : *elements) {
        if (element.type == reader->largestElement()->type)
            continue;
        Result<DecodedPicture> picture = reader->picture(element);
        if (picture)
            result.image.addRepresentation(std::make_shared<BitmapImageRep>(std::move(picture->raster)));
        else if (picture.error().code == ErrorCode::OutOfMemory)
            return picture.error();
        else
            result.warnings << QStringLiteral("the element %1 is passed over: %2")
                                   .arg(element.type.text(), picture.error().sentence);
    }
    if (const Result<Done> added = addReducedCopies(result.image, std::move(largest->raster)); !added)
        return added.error();
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

/// Loads a file of a format with one bitmap.
Result<LoadedPicture> loadBitmap(const PictureFormatRow& format, const QByteArray& bytes,
                                 const ReducedCopies::Renders& renders) {
    Result<DecodedPicture> decoded = format.decode(bytes, renders);
    if (!decoded)
        return decoded.error();
    const QSize size = decoded->wholeSize.isEmpty() ? decoded->raster.size() : decoded->wholeSize;
    LoadedPicture picture{Image(size), false, std::move(decoded->warnings)};
    Result<QImage> largest = reduced(std::move(decoded->raster), ReducedCopies::largestNeeded(size, renders));
    if (!largest)
        return largest.error();
    picture.image.addRepresentation(std::make_shared<BitmapImageRep>(*largest));
    if (const Result<Done> added = addReducedCopies(picture.image, std::move(*largest)); !added)
        return added.error();
    return picture;
}

Result<LoadedPicture> loaded(const QByteArray& bytes, const LoadOptions& options) {
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

} // namespace

Result<DecodedPicture> ImageSource::decode(const QByteArray& bytes) {
    return unlessMemoryIsShort([&] {
        const PictureFormatRow* format = PictureFormats::find(bytes);
        return format != nullptr ? format->decode(bytes, std::nullopt) : unknownFormat();
    });
}

Result<LoadedPicture> ImageSource::load(const QByteArray& bytes, const LoadOptions& options) {
    const StageTimes::Timer timer(Stage::Decode);
    return unlessMemoryIsShort([&] { return loaded(bytes, options); });
}

Result<LoadedPicture> ImageSource::loadFile(const std::string& path, const LoadOptions& options) {
    const StageTimes::Timer timer(Stage::Decode);
    const Result<RegularFile::Part> file = RegularFile::readPart(path, ImageSource::maximumFile, lengthOf);
    if (!file)
        return file.error();
    return load(file->bytes, options);
}

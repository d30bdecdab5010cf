#include "imaging/io/ImageSource.h"

#include "base/LongWork.h"
#include "base/ShortMemory.h"
#include "base/StageTimes.h"
#include "files/RegularFile.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/ico/IcoReader.h"
#include "imaging/image/BitmapImageRep.h"
#include "imaging/image/FittedRep.h"
#include "imaging/io/OtherKind.h"
#include "imaging/io/PictureFormat.h"
#include "imaging/pixels/Raster.h"
#include "imaging/pixels/ReducedCopies.h"
#include "imaging/pixels/Resampler.h"
#include "imaging/svg/SvgDocument.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace {

Error unknownFormat(const QByteArray& bytes) {
    const QString refusal = refusalOfOtherKind(bytes);
    return {ErrorCode::UnknownFormat,
            refusal.isEmpty()
                ? QStringLiteral("not a picture of a known format (%1)").arg(PictureFormats::names())
                : refusal};
}

/// The format of a file that begins with `start`.
Result<const PictureFormatRow*> formatOf(const QByteArray& start) {
    if (start.isEmpty())
        return Error{ErrorCode::UnknownFormat, QStringLiteral("the file is empty")};
    const PictureFormatRow* format = PictureFormats::find(start);
    if (format == nullptr)
        return unknownFormat(start);
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
        LongWork::step();
        Result<QImage> next = stretched(raster, size);
        if (!next)
            return next.error();
        raster = std::move(*next);
        if (!has(size))
            image.addRepresentation(std::make_shared<BitmapImageRep>(raster));
    }
    return Done{};
}

/// A picture whose largest bitmap is `largest`.
LoadedPicture startedWith(DecodedPicture largest) {
    LoadedPicture result{Image(largest.raster.size()), largest.raster.size(), false,
                         std::move(largest.warnings)};
    result.image.addRepresentation(std::make_shared<BitmapImageRep>(std::move(largest.raster)));
    return result;
}

/// Adds a smaller bitmap that the file has. A damaged one is left out with a warning, which calls it `name`.
Result<Done> addSmaller(LoadedPicture& result, Result<DecodedPicture> picture, const QString& name) {
    if (picture)
        result.image.addRepresentation(std::make_shared<BitmapImageRep>(std::move(picture->raster)));
    else if (picture.error().code == ErrorCode::OutOfMemory)
        return picture.error();
    else
        result.warnings << QStringLiteral("%1 is left out: %2").arg(name, picture.error().sentence);
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
    const QImage raster = largest->raster;
    LoadedPicture result = startedWith(std::move(*largest));
    const Result<std::vector<IcnsElement>> elements = reader->pictureElements();
    if (!elements)
        return elements.error();
    for (const IcnsElement& element : *elements) {
        if (element.type == reader->largestElement()->type)
            continue;
        const QString name = QStringLiteral("the element %1").arg(element.type.text());
        if (Result<Done> added = addSmaller(result, reader->picture(element), name); !added)
            return added.error();
    }
    if (const Result<Done> added = addReducedCopies(result.image, raster); !added)
        return added.error();
    return result;
}

/// Loads every size of a Windows icon file, as `loadIcns`.
Result<LoadedPicture> loadIco(const QByteArray& bytes) {
    const Result<IcoReader> reader = IcoReader::open(bytes);
    if (!reader)
        return reader.error();
    const std::vector<IcoReader::Entry>& entries = reader->entries();
    Result<DecodedPicture> largest = reader->picture(entries.front());
    if (!largest)
        return largest.error();
    const QImage raster = largest->raster;
    LoadedPicture result = startedWith(std::move(*largest));
    for (auto entry = entries.begin() + 1; entry != entries.end(); ++entry) {
        const QString name = QStringLiteral("the image of %1 × %2 pixels in the icon")
                                 .arg(entry->size.width())
                                 .arg(entry->size.height());
        if (Result<Done> added = addSmaller(result, reader->picture(*entry), name); !added)
            return added.error();
    }
    if (const Result<Done> added = addReducedCopies(result.image, raster); !added)
        return added.error();
    return result;
}

Result<LoadedPicture> loadSvg(const QByteArray& bytes, const LoadOptions& options) {
    const Result<std::shared_ptr<const SvgDocument>> document =
        SvgDocument::fromBytes(bytes, {options.renders, options.svgTime});
    if (!document)
        return document.error();
    LoadedPicture picture{Image((*document)->size()), (*document)->size(), true, (*document)->warnings()};
    picture.image.addRepresentation(*document);
    return picture;
}

/// The pixels of `raster` in that rectangle.
Result<QImage> cut(QImage raster, const QRect& part) {
    if (part.size() == raster.size())
        return raster;
    Result<QImage> copy = unlessMemoryIsShort([&] { return raster.copy(part); });
    if (!copy || copy->isNull())
        return noMemoryForPixels(part.width(), part.height());
    return copy;
}

/// Loads a file of a format with one bitmap.
Result<LoadedPicture> loadBitmap(const PictureFormatRow& format, const QByteArray& bytes,
                                 const ReducedCopies::Renders& renders) {
    Result<DecodedPicture> decoded = format.decode(bytes, renders);
    if (!decoded)
        return decoded.error();
    const bool isWhole = decoded->wholeSize.isEmpty();
    const QSize size = isWhole ? decoded->raster.size() : decoded->wholeSize;
    const QRect part = renders.part(size);
    LoadedPicture picture{Image(part.size()), size, false, std::move(decoded->warnings)};
    Result<QImage> largest = isWhole ? cut(std::move(decoded->raster), part) : std::move(decoded->raster);
    if (largest)
        largest = reduced(std::move(*largest), ReducedCopies::largestNeeded(part.size(), renders));
    if (!largest)
        return largest.error();
    picture.image.addRepresentation(std::make_shared<BitmapImageRep>(*largest));
    if (const Result<Done> added = addReducedCopies(picture.image, std::move(*largest)); !added)
        return added.error();
    return picture;
}

Result<LoadedPicture> loadedPlain(const QByteArray& bytes, const LoadOptions& options) {
    const Result<const PictureFormatRow*> format = formatOf(bytes);
    if (!format)
        return format.error();
    switch ((*format)->format) {
    case PictureFormat::Icns:
        return loadIcns(bytes);
    case PictureFormat::Ico:
        return loadIco(bytes);
    case PictureFormat::Svg:
        return loadSvg(bytes, options);
    default:
        return loadBitmap(**format, bytes, options.renders);
    }
}

Result<LoadedPicture> loaded(const QByteArray& bytes, const LoadOptions& options) {
    Result<LoadedPicture> picture = loadedPlain(bytes, options);
    if (picture)
        picture->image = fitted(std::move(picture->image), options.renders.fit);
    return picture;
}

} // namespace

Result<DecodedPicture> ImageSource::decode(const QByteArray& bytes) {
    return unlessMemoryIsShort([&] {
        const PictureFormatRow* format = PictureFormats::find(bytes);
        return format != nullptr ? format->decode(bytes, std::nullopt) : unknownFormat(bytes);
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

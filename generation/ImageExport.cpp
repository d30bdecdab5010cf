#include "generation/ImageExport.h"

#include "base/Log.h"

#include <iterator>

namespace {

// The platform's values. It sets a quality for lossless formats too.
constexpr float jpegQuality = 0.7F;
constexpr float fullQuality = 1;
constexpr qint32 lzw = 5;

const ImageExport::Format formats[] = {
    {"kJPEG_TYPE:", ImageDestination::jpegType, {jpegQuality, std::nullopt}},
    {"kTIFF_TYPE:", ImageDestination::tiffType, {std::nullopt, lzw}},
    {"kBMP_TYPE:", ImageDestination::bmpType, {fullQuality, std::nullopt}},
    {"kGIF_TYPE:", ImageDestination::gifType, {fullQuality, std::nullopt}},
    {"kPNG_TYPE:", ImageDestination::pngType, {}},
    {"kJPEG2000_TYPE:", ImageDestination::jpeg2000Type, {}},
};

} // namespace

const ImageExport::Format* ImageExport::format(quint64 number) {
    return number < std::size(formats) ? &formats[number] : nullptr;
}

Result<Done> ImageExport::saveImageInSelectedFormat(quint64 number, const QString& filePath,
                                                    const QImage& imageRef) {
    const Format* chosen = format(number);
    if (chosen == nullptr)
        return Done{};
    logLine(QString::fromLatin1(chosen->logText));
    Result<ImageDestination> destination =
        ImageDestination::create(filePath, QString::fromLatin1(chosen->type), 1);
    if (!destination)
        return destination.error();
    if (const Result<Done> added = destination->addImage(imageRef, chosen->properties); !added)
        return added.error();
    return destination->finalize(AtomicFile::Durability::Synced);
}

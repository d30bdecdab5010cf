#include "imaging/io/ImageDestination.h"

#include "base/StageTimes.h"
#include "imaging/formats/BmpWriter.h"
#include "imaging/formats/GifWriter.h"
#include "imaging/formats/Jpeg2000Writer.h"
#include "imaging/formats/JpegWriter.h"
#include "imaging/formats/TiffWriter.h"
#include "imaging/image/EncodedPicture.h"
#include "imaging/png/PngWriter.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

/// A type that holds one picture.
struct Encoder {
    const char* type;
    int longestSide; ///< in pixels, that the format can hold
    Result<QByteArray> (*encode)(const QImage& image, const ImageProperties& properties);
};

constexpr qint32 lzw = 5;
constexpr int unlimited = std::numeric_limits<int>::max();

constexpr Encoder encoders[] = {
    {ImageDestination::jpegType, 65500,
     [](const QImage& image, const ImageProperties& properties) {
         return encodeJpeg(image, static_cast<double>(properties.lossyCompressionQuality.value_or(1)));
     }},
    {ImageDestination::tiffType, unlimited,
     [](const QImage& image, const ImageProperties& properties) {
         return encodeTiff(image,
                           properties.tiffCompression == lzw ? TiffCompression::Lzw : TiffCompression::None);
     }},
    {ImageDestination::bmpType, unlimited,
     [](const QImage& image, const ImageProperties&) { return encodeBmp(image); }},
    {ImageDestination::gifType, 65535,
     [](const QImage& image, const ImageProperties&) { return encodeGif(image); }},
    {ImageDestination::pngType, unlimited,
     [](const QImage& image, const ImageProperties& properties) {
         return properties.pngs != nullptr ? properties.pngs->encoded(image) : encodePng(image);
     }},
    {ImageDestination::jpeg2000Type, unlimited,
     [](const QImage& image, const ImageProperties&) { return encodeJpeg2000(image); }},
};

const Encoder* encoderOf(const QString& type) {
    const auto* found = std::ranges::find_if(
        encoders, [&](const Encoder& encoder) { return type == QLatin1String(encoder.type); });
    return found != std::end(encoders) ? found : nullptr;
}

} // namespace

Result<ImageDestination> ImageDestination::create(const QString& path, const QString& type, int count) {
    if (path.isEmpty() || path.contains(QChar::Null))
        return Error{ErrorCode::NotAPath, QStringLiteral("not a path")};
    const bool isIcns = type == QLatin1String(icnsType);
    if (isIcns ? count < 1 : encoderOf(type) == nullptr || count != 1)
        return Error{ErrorCode::Unsupported, QStringLiteral("files of this type are not written here")};
    return ImageDestination(path, type, count);
}

Result<Done> ImageDestination::addImage(const QImage& picture, const ImageProperties& properties) {
    --m_missing;
    Result<Done> kept = unlessMemoryIsShort([&] { return keep(picture, properties); });
    if (!kept && !m_failure)
        m_failure = kept.error();
    return kept;
}

Result<Done> ImageDestination::keep(const QImage& picture, const ImageProperties& properties) {
    if (picture.isNull())
        return noPixels();
    const bool isOurs = picture.format() == QImage::Format_RGBA8888_Premultiplied;
    const QImage image = isOurs ? picture : picture.convertedTo(QImage::Format_RGBA8888_Premultiplied);
    if (image.isNull())
        return noMemoryForPixels(picture.width(), picture.height());
    if (const Encoder* encoder = encoderOf(m_type)) {
        if (std::max(image.width(), image.height()) > encoder->longestSide)
            return sideTooLong(encoder->longestSide);
        Result<QByteArray> file = encoder->encode(image, properties);
        if (!file)
            return file.error();
        m_file = std::move(*file);
        m_largestSize = image.size();
        return Done{};
    }
    const Result<IcnsWriter::Added> added = m_icns.addImage(image, properties.pngs);
    if (!added)
        return added.error();
    if (*added == IcnsWriter::Added::Yes)
        m_largestSize = m_largestSize.expandedTo(image.size());
    return Done{};
}

Result<Done> ImageDestination::finalize(AtomicFile::Durability durability) {
    return finalizeBy([&] { return AtomicFile::write(m_path, m_file, {durability}); });
}

Result<Done> ImageDestination::finalize(OutputPlace& place) {
    return finalizeBy([&] { return place.write(m_path, m_file); });
}

/// `write` puts `m_file` to its place.
Result<Done> ImageDestination::finalizeBy(const std::function<Result<Done>()>& write) {
    if (!m_icns.isEmpty())
        m_file = m_icns.data();
    if (m_failure)
        return *m_failure;
    if (m_missing != 0 || m_file.isEmpty())
        return Error{ErrorCode::Malformed, QStringLiteral("its pictures could not all be made")};
    const StageTimes::Timer timer(Stage::Write);
    Result<Done> written = write();
    if (written)
        m_bytesWritten = m_file.size();
    return written;
}

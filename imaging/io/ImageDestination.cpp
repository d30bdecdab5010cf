#include "imaging/io/ImageDestination.h"

#include "base/StageTimes.h"
#include "imaging/formats/BmpWriter.h"
#include "imaging/formats/GifWriter.h"
#include "imaging/formats/Jpeg2000Writer.h"
#include "imaging/formats/JpegWriter.h"
#include "imaging/formats/TiffWriter.h"
#include "imaging/png/PngWriter.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

/// A type that holds one picture.
struct Encoder {
    const char* type;
    int longestSide; ///< that the format can hold
    QByteArray (*encode)(const QImage& image, const ImageProperties& properties);
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
     [](const QImage& image, const ImageProperties&) { return encodePng(image); }},
    {ImageDestination::jpeg2000Type, unlimited,
     [](const QImage& image, const ImageProperties&) { return encodeJpeg2000(image); }},
};

const Encoder* encoderOf(const QString& type) {
    const auto* found = std::ranges::find_if(
        encoders, [&](const Encoder& encoder) { return type == QLatin1String(encoder.type); });
    return found != std::end(encoders) ? found : nullptr;
}

} // namespace

std::unique_ptr<ImageDestination> ImageDestination::create(const QString& path, const QString& type,
                                                           int count) {
    const bool isIcns = type == QLatin1String(icnsType);
    const bool isWritable = isIcns ? count >= 1 : encoderOf(type) != nullptr && count == 1;
    if (path.isEmpty() || path.contains(QChar::Null) || !isWritable)
        return nullptr;
    return std::unique_ptr<ImageDestination>(new ImageDestination(path, type, count));
}

void ImageDestination::addImage(const QImage& picture, const ImageProperties& properties) {
    --m_missing;
    const bool isOurs = picture.format() == QImage::Format_RGBA8888_Premultiplied;
    const QImage image = isOurs ? picture : picture.convertedTo(QImage::Format_RGBA8888_Premultiplied);
    if (const Encoder* encoder = encoderOf(m_type)) {
        if (std::max(image.width(), image.height()) > encoder->longestSide) {
            m_error = {ErrorCode::TooLarge,
                       QStringLiteral("this format holds no more than %1 pixels in a row or column")
                           .arg(encoder->longestSide)};
            return;
        }
        m_file = encoder->encode(image, properties);
        m_largestSize = image.size();
        return;
    }
    const IcnsWriter::Added added = m_icns.addImage(image);
    m_hasFailed = m_hasFailed || added == IcnsWriter::Added::Failed;
    if (added == IcnsWriter::Added::Yes)
        m_largestSize = m_largestSize.expandedTo(image.size());
}

Result<Done> ImageDestination::finalize(AtomicFile::Durability durability) {
    if (!m_icns.isEmpty())
        m_file = m_icns.data();
    if (m_missing != 0 || m_hasFailed || m_file.isEmpty())
        return m_error;
    const StageTimes::Timer timer(Stage::Write);
    Result<Done> written = AtomicFile::write(m_path, m_file, {durability});
    if (written)
        m_bytesWritten = m_file.size();
    return written;
}

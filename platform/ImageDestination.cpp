#include "platform/ImageDestination.h"

#include "platform/AtomicFile.h"
#include "platform/BmpWriter.h"
#include "platform/GifWriter.h"
#include "platform/Jpeg2000Writer.h"
#include "platform/JpegWriter.h"
#include "platform/PngWriter.h"
#include "platform/TiffWriter.h"

#include <algorithm>
#include <iterator>

namespace {

/// A type that holds one picture.
struct Encoder {
    const char* type;
    QByteArray (*encode)(const QImage& image, const ImageProperties& properties);
};

constexpr qint32 lzw = 5;

constexpr Encoder encoders[] = {
    {ImageDestination::jpegType,
     [](const QImage& image, const ImageProperties& properties) {
         return encodeJpeg(image, static_cast<double>(properties.lossyCompressionQuality.value_or(1)));
     }},
    {ImageDestination::tiffType,
     [](const QImage& image, const ImageProperties& properties) {
         return encodeTiff(image,
                           properties.tiffCompression == lzw ? TiffCompression::Lzw : TiffCompression::None);
     }},
    {ImageDestination::bmpType, [](const QImage& image, const ImageProperties&) { return encodeBmp(image); }},
    {ImageDestination::gifType, [](const QImage& image, const ImageProperties&) { return encodeGif(image); }},
    {ImageDestination::pngType, [](const QImage& image, const ImageProperties&) { return encodePng(image); }},
    {ImageDestination::jpeg2000Type,
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

void ImageDestination::addImage(const QImage& image, const ImageProperties& properties) {
    --m_missing;
    if (const Encoder* encoder = encoderOf(m_type)) {
        m_file = encoder->encode(image, properties);
        m_hasFailed = m_hasFailed || m_file.isEmpty();
        m_largestSize = image.size();
        return;
    }
    const IcnsWriter::Added added = m_icns.addImage(image);
    m_hasFailed = m_hasFailed || added == IcnsWriter::Added::Failed;
    if (added == IcnsWriter::Added::Yes)
        m_largestSize = m_largestSize.expandedTo(image.size());
}

Result<Done> ImageDestination::finalize() {
    if (!m_icns.isEmpty())
        m_file = m_icns.data();
    if (m_missing != 0 || m_hasFailed || m_file.isEmpty())
        return Error{ErrorCode::Malformed, QStringLiteral("one of its pictures can't be made")};
    Result<Done> written = AtomicFile::write(m_path, m_file);
    if (written)
        m_bytesWritten = m_file.size();
    return written;
}

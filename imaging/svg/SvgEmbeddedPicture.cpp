#include "imaging/svg/SvgEmbeddedPicture.h"

#include "base/ByteReader.h"
#include "imaging/formats/JpegReader.h"
#include "imaging/png/PngHeader.h"
#include "imaging/png/PngReader.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace {

/// `link` without white space and control characters, which readers of URIs pass over.
QString plain(QStringView link) {
    QString text;
    text.reserve(link.size());
    for (const QChar c : link) {
        if (c.unicode() > 0x20)
            text += c;
    }
    return text;
}

Error unsupported() {
    return {ErrorCode::Unsupported,
            QStringLiteral("the SVG document embeds something else than a PNG or JPEG picture")};
}

/// How many pixels the header of a PNG file tells. nullopt where the file does not begin with its header.
std::optional<quint64> pngPixels(const QByteArray& bytes) {
    const std::optional<QSize> size = PngHeader::size(bytes);
    if (!size)
        return std::nullopt;
    return static_cast<quint64>(qint64{size->width()} * size->height());
}

/// How many pixels the first frame header of a JPEG file tells (ITU-T T.81, B.2.2). nullopt where there is no
/// frame header.
std::optional<quint64> jpegPixels(const QByteArray& bytes) {
    constexpr qsizetype shortest = 10; // all that is read of a segment lies within it
    auto rest = ByteReader(bytes).from(2);
    while (rest && rest->size() >= shortest) {
        const quint8 marker = *rest->bigEndian<quint8>(1);
        if (rest->bigEndian<quint8>(0) != 0xff)
            return std::nullopt;
        const bool isFrame =
            marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
        if (isFrame)
            return quint64{*rest->bigEndian<quint16>(5)} * *rest->bigEndian<quint16>(7);
        // A second 0xff means that the first one is a fill byte before a marker.
        rest = rest->from(marker == 0xff ? 1 : 2 + *rest->bigEndian<quint16>(2));
    }
    return std::nullopt;
}

/// The bytes in the URI. nullopt where its encoding is broken.
std::optional<QByteArray> contents(QStringView data, bool isBase64) {
    const QByteArray bytes = QByteArray::fromPercentEncoding(data.toUtf8());
    if (!isBase64)
        return bytes;
    auto decoded = QByteArray::fromBase64Encoding(bytes, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    return std::move(*decoded);
}

} // namespace

bool SvgEmbeddedPicture::isData(QStringView link) {
    // White space and control characters are passed over, in any place and any number.
    const QLatin1String scheme("data:");
    QString start;
    for (const QChar c : link) {
        if (c.unicode() > 0x20)
            start += c;
        if (start.size() == scheme.size())
            break;
    }
    return start.compare(scheme, Qt::CaseInsensitive) == 0;
}

Result<qint64> SvgEmbeddedPicture::pixels(QStringView link) {
    const QString uri = plain(link);
    const qsizetype comma = uri.indexOf(u',');
    const qsizetype start = 5; // after "data:"
    if (comma < start)
        return unsupported();
    const QString type = uri.mid(start, comma - start).toLower();
    const QString media = type.section(u';', 0, 0);
    if (!media.isEmpty() && media != QLatin1String("image/png") && media != QLatin1String("image/jpeg") &&
        media != QLatin1String("image/jpg"))
        return unsupported();
    const std::optional<QByteArray> bytes =
        contents(QStringView(uri).mid(comma + 1), type.endsWith(QLatin1String(";base64")));
    if (!bytes)
        return Error{ErrorCode::Damaged,
                     QStringLiteral("a picture in the SVG document is not encoded as it should be")};
    const bool isPng = bytes->startsWith(PngHeader::signature);
    if (!isPng && !bytes->startsWith("\xff\xd8\xff"))
        return unsupported();
    const std::optional<quint64> told = isPng ? pngPixels(*bytes) : jpegPixels(*bytes);
    if (told && *told > static_cast<quint64>(maximumPixels))
        return Error{
            ErrorCode::TooLarge,
            QStringLiteral("the pictures in the SVG document have more than %1 pixels").arg(maximumPixels)};
    const Result<DecodedPicture> picture =
        told ? (isPng ? readPng(*bytes) : readJpeg(*bytes))
             : PictureReader::damaged(QStringLiteral("embedded"), QStringLiteral("it tells no size"));
    if (!picture)
        return Error{picture.error().code,
                     QStringLiteral("in the SVG document, %1").arg(picture.error().sentence)};
    return static_cast<qint64>(*told);
}

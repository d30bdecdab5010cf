#include "imaging/io/PictureFormat.h"

#include "imaging/formats/GifReader.h"
#include "imaging/formats/JpegReader.h"
#include "imaging/formats/QtPictureReader.h"
#include "imaging/formats/TiffReader.h"
#include "imaging/icns/IcnsReader.h"
#include "imaging/ico/IcoReader.h"
#include "imaging/png/PngHeader.h"
#include "imaging/png/PngReader.h"
#include "imaging/svg/SvgDocument.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <utility>

namespace {

Result<DecodedPicture> readIcns(const QByteArray& bytes) {
    const Result<IcnsReader> reader = IcnsReader::open(bytes);
    if (!reader)
        return reader.error();
    return reader->largestPicture();
}

/// The document drawn at its own size.
Result<DecodedPicture> readSvg(const QByteArray& bytes) {
    const Result<std::shared_ptr<const SvgDocument>> document = SvgDocument::fromBytes(bytes);
    if (!document)
        return document.error();
    const QSizeF size = (*document)->size();
    const double width = std::ceil(size.width());
    const double height = std::ceil(size.height());
    constexpr auto limit = static_cast<double>(PictureReader::maximumPixels);
    if (const Result<Done> allowed =
            PictureReader::checkSize(static_cast<qint64>(std::min(width, limit + 1)),
                                     static_cast<qint64>(std::min(height, limit + 1)));
        !allowed)
        return allowed.error();
    Result<QImage> raster = (*document)->rendered({0, 0, width, static_cast<int>(width)},
                                                  {0, 0, height, static_cast<int>(height)});
    if (!raster)
        return raster.error();
    return DecodedPicture{std::move(*raster), {}};
}

/// Whether `bytes` may be XML with an svg element.
bool isLikelySvg(const QByteArray& bytes) {
    const bool isUtf16 = bytes.startsWith("\xff\xfe") || bytes.startsWith("\xfe\xff");
    constexpr qsizetype prologue = 65536;
    const QString text = isUtf16 ? QString::fromUtf16(reinterpret_cast<const char16_t*>(bytes.constData()),
                                                      std::min(prologue, bytes.size()) / 2)
                                 : QString::fromUtf8(bytes.left(prologue));
    QStringView view = text;
    if (view.startsWith(QChar(0xfeff)))
        view = view.sliced(1);
    view = view.trimmed();
    const bool isPage = view.startsWith(QLatin1String("<!doctype html"), Qt::CaseInsensitive) ||
                        view.startsWith(QLatin1String("<html"), Qt::CaseInsensitive);
    return view.startsWith(u'<') && !isPage && (isUtf16 || view.contains(QLatin1String("svg")));
}

/// Formats are tried in this order. SVG is last, since it is the only format that is guessed.
constexpr PictureFormatRow rows[] = {
    {.format = PictureFormat::Png, .name = "PNG", .starts = {PngHeader::signature}, .readReduced = readPng},
    {.format = PictureFormat::Jpeg, .name = "JPEG", .starts = {"\xff\xd8\xff"}, .readReduced = readJpeg},
    {.format = PictureFormat::Tiff,
     .name = "TIFF",
     .starts = {QByteArrayView("II\x2a\0", 4), QByteArrayView("MM\0\x2a", 4), QByteArrayView("II\x2b\0", 4),
                QByteArrayView("MM\0\x2b", 4)},
     .read = readTiff},
    {.format = PictureFormat::Gif, .name = "GIF", .starts = {"GIF87a", "GIF89a"}, .readReduced = readGif},
    {.format = PictureFormat::Bmp, .name = "BMP", .starts = {"BM"}, .read = readBmp},
    {.format = PictureFormat::WebP, .name = "WebP", .starts = {"RIFF????WEBP"}, .read = readWebP},
    {.format = PictureFormat::Ico, .name = "ICO", .starts = {QByteArrayView("\0\0\1\0", 4)}, .read = readIco},
    {.format = PictureFormat::Icns, .name = "icns", .starts = {"icns"}, .read = readIcns},
    // A compressed document begins like a gzip file.
    {.format = PictureFormat::Svg,
     .name = "SVG",
     .starts = {"\x1f\x8b"},
     .isLikely = isLikelySvg,
     .read = readSvg},
};

bool beginsAs(QByteArrayView bytes, QByteArrayView start) {
    if (start.isEmpty() || bytes.size() < start.size())
        return false;
    return std::equal(start.begin(), start.end(), bytes.begin(), [](char wanted, char byte) {
        return wanted == PictureFormatRow::anyByte || wanted == byte;
    });
}

} // namespace

const PictureFormatRow* PictureFormats::find(const QByteArray& bytes) {
    const auto* found = std::ranges::find_if(rows, [&](const PictureFormatRow& row) {
        return std::ranges::any_of(row.starts,
                                   [&](QByteArrayView start) { return beginsAs(bytes, start); }) ||
               (row.isLikely != nullptr && row.isLikely(bytes));
    });
    return found != std::end(rows) ? found : nullptr;
}

QString PictureFormats::names() {
    QString text;
    for (const PictureFormatRow& row : rows) {
        if (&row != std::begin(rows))
            text += &row == std::end(rows) - 1 ? QStringLiteral(" or ") : QStringLiteral(", ");
        text += QLatin1String(row.name);
    }
    return text;
}

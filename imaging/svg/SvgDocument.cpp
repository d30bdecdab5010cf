#include "imaging/svg/SvgDocument.h"

#include "base/ShortMemory.h"
#include "imaging/image/PictureReader.h"
#include "imaging/pixels/Raster.h"
#include "imaging/svg/SvgContent.h"
#include "imaging/svg/SvgPlan.h"

#include <zlib.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

namespace {

constexpr auto mostBytes = static_cast<qsizetype>(SvgPipe::mostDocumentBytes);

Error damaged(const QString& detail) {
    return PictureReader::damaged(QStringLiteral("SVG"), detail);
}

/// Unpacks a gzip file (RFC 1952).
Result<QByteArray> gunzip(const QByteArray& bytes) {
    QByteArray out;
    QByteArray block(1 << 16, Qt::Uninitialized);
    z_stream stream{};
    constexpr int gzipWindow = 15 + 16;
    if (inflateInit2(&stream, gzipWindow) != Z_OK)
        return outOfMemory();
    const std::unique_ptr<z_stream, decltype(&inflateEnd)> ended(&stream, inflateEnd);
    stream.next_in =
        reinterpret_cast<Bytef*>(const_cast<char*>(bytes.constData())); // NOLINT: zlib does not write there
    stream.avail_in = static_cast<uInt>(std::min<qsizetype>(bytes.size(), mostBytes));
    int status = Z_OK;
    while (status == Z_OK && out.size() <= mostBytes) {
        stream.next_out = reinterpret_cast<Bytef*>(block.data());
        stream.avail_out = static_cast<uInt>(block.size());
        status = inflate(&stream, Z_NO_FLUSH);
        out.append(block.constData(), block.size() - static_cast<qsizetype>(stream.avail_out));
    }
    if (status == Z_OK)
        return Error{ErrorCode::TooLarge, QStringLiteral("the SVG document is larger than 64 MiB")};
    if (status == Z_MEM_ERROR)
        return outOfMemory();
    if (status != Z_STREAM_END)
        return damaged(QStringLiteral("it can't be unpacked"));
    return out;
}

} // namespace

Result<QByteArray> SvgDocument::inflated(const QByteArray& bytes) {
    return bytes.startsWith("\x1f\x8b") ? unlessMemoryIsShort([&] { return gunzip(bytes); }) : bytes;
}

Result<std::shared_ptr<const SvgDocument>> SvgDocument::fromBytes(const QByteArray& bytes,
                                                                  const SvgDrawings::Options& options) {
    return unlessMemoryIsShort([&]() -> Result<std::shared_ptr<const SvgDocument>> {
        const Result<QByteArray> document = inflated(bytes);
        if (!document)
            return document.error();
        // The library would unpack it, whatever comes of it.
        if (document->startsWith("\x1f\x8b"))
            return damaged(QStringLiteral("it is compressed twice"));
        const Result<QStringList> leftOut = SvgContent::leftOut(*document);
        if (!leftOut)
            return leftOut.error();
        Result<std::unique_ptr<SvgDrawings>> drawings = SvgDrawings::open(*document, options);
        if (!drawings)
            return drawings.error();
        // The library has a font of its own for texts that ask for none.
        QStringList missing = (*drawings)->missingFonts();
        if (const QLatin1String usual("Times New Roman"); !document->contains(usual.data()))
            missing.removeAll(usual);
        QStringList warnings = *leftOut;
        if (!missing.isEmpty())
            warnings << QStringLiteral("the picture's text is drawn with other fonts, since these are not "
                                       "installed: %1")
                            .arg(SvgContent::listed(missing));
        return std::shared_ptr<const SvgDocument>(new SvgDocument(std::move(*drawings), std::move(warnings)));
    });
}

Result<QImage> SvgDocument::rendered(AxisMapping x, AxisMapping y) const {
    if (x.targetLength <= 0 || y.targetLength <= 0)
        return noPixels();
    const std::optional<SvgPipe::Request> drawing = SvgPlan::drawing(x, y);
    if (!drawing)
        return PictureReader::tooLarge(x.targetLength, y.targetLength);
    return unlessMemoryIsShort([&] { return m_drawings->draw(*drawing); });
}

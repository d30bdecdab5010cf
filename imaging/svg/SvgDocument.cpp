#include "imaging/svg/SvgDocument.h"

#include "base/ShortMemory.h"
#include "imaging/deflate/Gzip.h"
#include "imaging/image/PictureReader.h"
#include "imaging/pixels/Raster.h"
#include "imaging/svg/SvgContent.h"
#include "imaging/svg/SvgPlan.h"

#include <memory>
#include <optional>
#include <utility>

Result<QByteArray> SvgDocument::inflated(const QByteArray& bytes) {
    return Gzip::isGzip(bytes) ? Gzip::unpacked(bytes, SvgContent::mostBytes, QStringLiteral("SVG document"))
                               : bytes;
}

Result<std::shared_ptr<const SvgDocument>> SvgDocument::fromBytes(const QByteArray& bytes,
                                                                  const SvgDrawings::Options& options) {
    return unlessMemoryIsShort([&]() -> Result<std::shared_ptr<const SvgDocument>> {
        const Result<QByteArray> document = inflated(bytes);
        if (!document)
            return document.error();
        // The library would unpack it, whatever comes of it.
        if (Gzip::isGzip(*document))
            return PictureReader::damaged(QStringLiteral("SVG"), QStringLiteral("it is compressed twice"));
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

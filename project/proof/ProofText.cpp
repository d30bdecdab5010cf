#include "project/proof/ProofText.h"

#include "imaging/drawing/GraphicsContext.h"
#include "imaging/io/ImageSource.h"
#include "imaging/pixels/Raster.h"

#include <algorithm>

namespace {

int cellsOf(char32_t letter) {
    constexpr char32_t firstWide = 0x1100;
    constexpr char32_t firstNarrowAgain = 0x2000;
    constexpr char32_t firstCjk = 0x2e80;
    return letter >= firstCjk || (letter >= firstWide && letter < firstNarrowAgain) ? 2 : 1;
}

QString attributes(ProofTextLine::Font font) {
    switch (font) {
    case ProofTextLine::Font::Plain:
        return QStringLiteral("font-family=\"sans-serif\"");
    case ProofTextLine::Font::Bold:
        return QStringLiteral("font-family=\"sans-serif\" font-weight=\"bold\"");
    case ProofTextLine::Font::Fixed:
        break;
    }
    return QStringLiteral("font-family=\"monospace\"");
}

} // namespace

Result<QImage> drawnText(const std::vector<ProofTextLine>& lines, const QSize& size) {
    QString svg = QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%1\" height=\"%2\">")
                      .arg(size.width())
                      .arg(size.height());
    for (const ProofTextLine& line : lines)
        svg += QStringLiteral("<text xml:space=\"preserve\" x=\"%1\" y=\"%2\" font-size=\"%3\" fill=\"%4\" ")
                   .arg(line.baseline.x())
                   .arg(line.baseline.y())
                   .arg(line.size)
                   .arg(line.color) +
               attributes(line.font) + u'>' + line.text.toHtmlEscaped() + QStringLiteral("</text>");
    svg += QStringLiteral("</svg>");
    const Result<LoadedPicture> picture = ImageSource::load(svg.toUtf8());
    return picture ? drawnRaster(picture->image, size) : Result<QImage>(picture.error());
}

QStringList wrappedText(const QString& text, int cells) {
    const auto letters = text.toUcs4();
    QStringList lines;
    qsizetype begin = 0;
    qsizetype breakAt = 0;
    int taken = 0;
    for (qsizetype i = 0; i < letters.size(); ++i) {
        const char32_t letter = letters[i];
        if (taken + cellsOf(letter) > cells && i > begin) {
            const qsizetype end = breakAt > begin ? breakAt : i;
            lines << QString::fromUcs4(reinterpret_cast<const char32_t*>(letters.data()) + begin, end - begin)
                         .trimmed();
            begin = end;
            taken = 0;
            for (qsizetype j = begin; j < i; ++j)
                taken += cellsOf(letters[j]);
        }
        taken += cellsOf(letter);
        if (QStringView(u" /-_,").contains(QChar::fromUcs4(letter)))
            breakAt = i + 1;
    }
    if (begin < letters.size())
        lines << QString::fromUcs4(reinterpret_cast<const char32_t*>(letters.data()) + begin,
                                   letters.size() - begin)
                     .trimmed();
    return lines;
}

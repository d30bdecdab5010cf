#include "imaging/svg/SvgGuard.h"

#include "base/ShortMemory.h"
#include "imaging/image/PictureReader.h"
#include "imaging/svg/SvgEmbeddedPicture.h"
#include "imaging/svg/SvgNumbers.h"
#include "imaging/svg/SvgReferences.h"
#include "imaging/svg/SvgStyle.h"

#include <QRegularExpression>
#include <QStringList>
#include <QXmlStreamReader>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace {

Error tooLarge(const QString& sentence) {
    return {ErrorCode::TooLarge, QStringLiteral("the SVG document ") + sentence};
}

Error unsupported(const QString& sentence) {
    return {ErrorCode::Unsupported, QStringLiteral("the SVG document ") + sentence};
}

/// Whether an attribute decides how long a line is.
bool isGeometry(const QString& name) {
    static const QStringList names{QStringLiteral("d"),     QStringLiteral("points"), QStringLiteral("x1"),
                                   QStringLiteral("y1"),    QStringLiteral("x2"),     QStringLiteral("y2"),
                                   QStringLiteral("width"), QStringLiteral("height"), QStringLiteral("r"),
                                   QStringLiteral("rx"),    QStringLiteral("ry")};
    return names.contains(name);
}

class Pass {
  public:
    explicit Pass(const QByteArray& document)
        : m_reader(document),
          // An escape or another encoding may hide the word.
          m_mayHaveDashes(document.contains("dash") || document.contains("&#") || document.contains('\\') ||
                          !document.contains("svg")) {}

    Result<Done> check() {
        while (!m_reader.atEnd() && !m_error)
            take(m_reader.readNext());
        if (!m_error && m_reader.hasError())
            m_error = PictureReader::damaged(
                QStringLiteral("SVG"),
                QStringLiteral("line %1: %2").arg(m_reader.lineNumber()).arg(m_reader.errorString()));
        if (!m_error && m_longestLine / m_shortestDashes > SvgGuard::maximumDashes)
            m_error = tooLarge(QStringLiteral("has dashes that are too short for its lines"));
        if (!m_error) {
            if (const Result<Done> allowed = m_references.check(); !allowed)
                m_error = allowed.error();
        }
        const double largest = std::max(m_fontSize, usualFontSize) * m_references.textScale() *
                               std::pow(m_fontFactor, m_textDepth);
        if (!m_error && m_references.textScale() > 0 && !(largest <= SvgGuard::maximumFontSize))
            m_error = tooLarge(QStringLiteral("has text that is too large"));
        return m_error ? Result<Done>(*m_error) : Done{};
    }

  private:
    void take(QXmlStreamReader::TokenType token) {
        switch (token) {
        case QXmlStreamReader::DTD:
            takeDeclarations(m_reader.text());
            break;
        case QXmlStreamReader::ProcessingInstruction:
            if (m_reader.processingInstructionTarget() == QLatin1String("xml-stylesheet") &&
                m_reader.processingInstructionData().contains(QLatin1String("data"), Qt::CaseInsensitive))
                m_error = unsupported(QStringLiteral("embeds a style sheet as data"));
            break;
        case QXmlStreamReader::StartElement:
            openElement();
            break;
        case QXmlStreamReader::EndElement:
            closeElement();
            break;
        case QXmlStreamReader::Characters:
            takeText(m_reader.text());
            break;
        default:
            break;
        }
    }

    /// Searches the text of the document type: the reader's own lists leave parameter entities out.
    void takeDeclarations(QStringView text) {
        qsizetype at = 0;
        while (!m_error && (at = text.indexOf(QLatin1String("<!ENTITY"), at)) >= 0) {
            const qsizetype end = text.indexOf(u'>', at);
            const QString declaration =
                text.mid(at, end < 0 ? -1 : end - at).toString().section(u'"', 0, 0).section(u'\'', 0, 0);
            if (declaration.contains(QLatin1String("SYSTEM")) ||
                declaration.contains(QLatin1String("PUBLIC")))
                m_error = unsupported(QStringLiteral("declares an external entity"));
            at += 8;
        }
        if (!m_error && text.contains(QLatin1String("<!ENTITY")))
            m_error = unsupported(QStringLiteral("declares entities; save it without them"));
        else if (!m_error && text.contains(QLatin1String("<!ATTLIST")))
            m_error = unsupported(QStringLiteral("declares attributes of its own"));
    }

    void openElement() {
        if (++m_elements > SvgGuard::maximumElements)
            m_error = tooLarge(QStringLiteral("has more than %1 elements").arg(SvgGuard::maximumElements));
        else if (++m_depth > SvgGuard::maximumDepth)
            m_error =
                tooLarge(QStringLiteral("is nested deeper than %1 elements").arg(SvgGuard::maximumDepth));
        if (m_error)
            return;
        const QString name = m_reader.name().toString();
        m_references.open(name, 0);
        if (name == QLatin1String("style"))
            m_style.clear();
        if (name == QLatin1String("text"))
            m_textInOne = 0;
        m_names << name;
        if (m_names.contains(QLatin1String("text")))
            m_textDepth = std::max(m_textDepth, m_depth);
        if (name == QLatin1String("feTile")) {
            m_error = unsupported(QStringLiteral("has a filter that tiles"));
            return;
        }
        m_line = 0;
        for (const QXmlStreamAttribute& attribute : m_reader.attributes()) {
            takeAttribute(name, attribute.name().toString(), attribute.value());
            if (m_error)
                return;
        }
    }

    void closeElement() {
        const QString name = m_names.takeLast();
        if (name == QLatin1String("style"))
            takeSheet();
        m_references.close();
        --m_depth;
    }

    void takeText(QStringView text) {
        if (m_names.contains(QLatin1String("style")))
            m_style += text;
        if (!m_names.contains(QLatin1String("text")))
            return;
        m_text += text.size();
        m_textInOne += text.size();
        m_references.addWork(static_cast<double>(text.size()));
        if (m_text > SvgGuard::maximumText)
            m_error =
                tooLarge(QStringLiteral("has more than %1 characters of text").arg(SvgGuard::maximumText));
        else if (m_textInOne > SvgGuard::maximumTextInOne)
            m_error = tooLarge(
                QStringLiteral("has a text of more than %1 characters").arg(SvgGuard::maximumTextInOne));
    }

    void takeSheet() {
        const bool isShort = m_style.size() <= SvgGuard::maximumStyle;
        const SvgStyle::Sheet sheet = isShort ? SvgStyle::sheet(m_style) : SvgStyle::Sheet();
        m_style.clear();
        m_declarations += sheet.declarationCount;
        if (!isShort || m_declarations > SvgStyle::maximumDeclarations) {
            m_error = tooLarge(QStringLiteral("has style sheets that are too large"));
            return;
        }
        if (std::ranges::any_of(sheet.imports, SvgEmbeddedPicture::isData))
            m_error = unsupported(QStringLiteral("embeds a style sheet as data"));
        for (const SvgStyle::Rule& rule : sheet.rules) {
            for (const SvgStyle::Declaration& declaration : rule.declarations) {
                checkLinks(declaration);
                takeDashes(declaration);
                takeFont(declaration);
                if (declaration.property == QLatin1String("transform"))
                    m_fontFactor = std::max(m_fontFactor, SvgNumbers::scaleOf(declaration.value));
            }
        }
        m_references.addRules(sheet.rules);
    }

    void takeAttribute(const QString& element, const QString& name, QStringView value) {
        if (name == QLatin1String("id"))
            m_references.setId(value.toString());
        else if (name == QLatin1String("class"))
            m_references.setClasses(value.toString().simplified().split(u' ', Qt::SkipEmptyParts));
        else if (name == QLatin1String("href"))
            takeLink(element, value);
        else if (value.size() > SvgGuard::maximumStyle && name != QLatin1String("d") &&
                 name != QLatin1String("points"))
            m_error = tooLarge(QStringLiteral("has a value that is too long"));
        else if (name == QLatin1String("style"))
            takeStyle(value);
        else if (name == QLatin1String("viewBox"))
            takeViewBox(value);
        else if (name == QLatin1String("d") || name == QLatin1String("points"))
            takePoints(value);
        else if (element.startsWith(QLatin1String("fe")))
            takeFilter(element, name, value);
        else
            takeDeclaration(SvgStyle::attribute(name, value));
        if (m_mayHaveDashes && isGeometry(name)) {
            m_line += SvgNumbers::total(value);
            m_longestLine = std::max(m_longestLine, m_line);
        }
        if (element == QLatin1String("line"))
            m_references.setPoints(2);
    }

    void takePoints(QStringView value) {
        constexpr double charactersOfASimpleElement = 64;
        m_references.addWork(static_cast<double>(value.size()) / charactersOfASimpleElement);
        m_references.setPoints(SvgNumbers::count(value) + static_cast<double>(value.count(u'z')) +
                               static_cast<double>(value.count(u'Z')));
    }

    void takeStyle(QStringView value) {
        for (const SvgStyle::Declaration& declaration : SvgStyle::declarations(value))
            takeDeclaration(declaration);
    }

    void takeDeclaration(const SvgStyle::Declaration& declaration) {
        checkLinks(declaration);
        takeDashes(declaration);
        takeFont(declaration);
        if (declaration.property == QLatin1String("transform") ||
            declaration.property.compare(QLatin1String("patternTransform"), Qt::CaseInsensitive) == 0)
            m_references.multiplyScale(SvgNumbers::scaleOf(declaration.value));
        m_references.addDeclaration(declaration);
    }

    void takeDashes(const SvgStyle::Declaration& declaration) {
        if (declaration.property != QLatin1String("stroke-dasharray"))
            return;
        const double length = SvgNumbers::total(declaration.value);
        if (length > 0)
            m_shortestDashes = std::min(m_shortestDashes, length);
    }

    /// Takes the font sizes of a declaration. A relative size may apply once more at every element down to
    /// the text.
    void takeFont(const SvgStyle::Declaration& declaration) {
        if (declaration.property != QLatin1String("font") &&
            declaration.property != QLatin1String("font-size"))
            return;
        // A unit is the end of a word: the name of a family may contain any characters.
        static const QRegularExpression length(
            QStringLiteral(
                "([0-9]*\\.?[0-9]+(?:e[+-]?[0-9]+)?) *(%|em|ex|ch|rem|in|cm|mm|m|pc|pt|px)?(?![a-z0-9.-])"),
            QRegularExpression::CaseInsensitiveOption);
        const QString& value = declaration.value;
        for (auto matches = length.globalMatch(value); matches.hasNext();) {
            const QRegularExpressionMatch match = matches.next();
            // In "font" a number without a unit is a weight or a line's height.
            if (match.capturedView(2).isEmpty() && declaration.property == QLatin1String("font"))
                continue;
            takeFontSize(match.capturedView(1).toDouble(), match.captured(2).toLower());
        }
        if (value.contains(QLatin1String("larger"), Qt::CaseInsensitive))
            m_fontFactor = std::max(m_fontFactor, larger);
    }

    void takeFontSize(double number, const QString& unit) {
        static const QStringList relative{QStringLiteral("em"), QStringLiteral("ex"), QStringLiteral("ch"),
                                          QStringLiteral("rem")};
        if (unit == QLatin1String("%"))
            m_fontFactor = std::max(m_fontFactor, number / 100);
        else if (relative.contains(unit))
            m_fontFactor = std::max(m_fontFactor, number);
        else if (unit.isEmpty() || unit.startsWith(u'p'))
            m_fontSize =
                std::max(m_fontSize, number * (unit == QLatin1String("pc") ? 12 : 1) * pixelsPerPoint);
        else
            m_fontSize = std::max(m_fontSize, number * pixelsPerInch);
    }

    void takeViewBox(QStringView value) {
        const QStringList numbers = value.toString().replace(u',', u' ').simplified().split(u' ');
        if (numbers.size() != 4)
            return;
        // The size at which it is shown is not known here.
        constexpr double usualSide = 1000;
        m_references.multiplyScale(usualSide / std::min(numbers[2].toDouble(), numbers[3].toDouble()));
    }

    /// Refuses documents and style sheets that are embedded as data: the drawing library would load them, and
    /// they are not checked here. It does not load fonts.
    void checkLinks(const SvgStyle::Declaration& declaration) {
        if (declaration.property != QLatin1String("src") &&
            std::ranges::any_of(declaration.urls, SvgEmbeddedPicture::isData))
            m_error = unsupported(QStringLiteral("embeds another document as data"));
    }

    void takeLink(const QString& element, QStringView value) {
        // A hyperlink and the elements of an animation do not draw what they link to.
        static const QStringList movers{QStringLiteral("animate"),       QStringLiteral("animateColor"),
                                        QStringLiteral("animateMotion"), QStringLiteral("animateTransform"),
                                        QStringLiteral("mpath"),         QStringLiteral("set")};
        if (element == QLatin1String("a") || movers.contains(element))
            return;
        if (!SvgEmbeddedPicture::isData(value)) {
            m_references.addLink(value.toString());
            return;
        }
        if (element != QLatin1String("image") && element != QLatin1String("feImage")) {
            m_error = unsupported(QStringLiteral("embeds another document as data"));
            return;
        }
        const Result<qint64> pixels = SvgEmbeddedPicture::pixels(value);
        if (!pixels) {
            m_error = pixels.error();
            return;
        }
        m_pixels += *pixels;
        constexpr double pixelsOfASimpleElement = 4096;
        m_references.addWork(static_cast<double>(*pixels) / pixelsOfASimpleElement);
        if (m_pixels > SvgEmbeddedPicture::maximumPixels)
            m_error = Error{ErrorCode::TooLarge,
                            QStringLiteral("the pictures in the SVG document have more than %1 pixels")
                                .arg(SvgEmbeddedPicture::maximumPixels)};
    }

    void takeFilter(const QString& element, const QString& name, QStringView value) {
        if (element == QLatin1String("feTurbulence") && name == QLatin1String("numOctaves") &&
            value.trimmed().toDouble() > SvgGuard::maximumOctaves)
            m_error = tooLarge(
                QStringLiteral("asks for more than %1 octaves of turbulence").arg(SvgGuard::maximumOctaves));
        if (element != QLatin1String("feConvolveMatrix") || name != QLatin1String("order"))
            return;
        const QStringList sides = value.toString().replace(u',', u' ').simplified().split(u' ');
        if (sides.first().toDouble() * sides.last().toDouble() > SvgGuard::maximumKernel)
            m_error = tooLarge(QStringLiteral("asks for a convolution of more than %1 numbers")
                                   .arg(SvgGuard::maximumKernel));
    }

    static constexpr double usualFontSize = 16;
    static constexpr double larger = 1.2;
    static constexpr double pixelsPerInch = 96;
    static constexpr double pixelsPerPoint = 96.0 / 72;

    QXmlStreamReader m_reader;
    SvgReferences m_references;
    std::optional<Error> m_error; ///< the first one
    int m_elements = 0;
    int m_depth = 0;
    QStringList m_names; ///< of the elements that are open
    QString m_style;
    std::size_t m_declarations = 0; ///< of all style sheets, counted as in SvgStyle::Sheet
    qsizetype m_text = 0;
    qsizetype m_textInOne = 0;
    qint64 m_pixels = 0;
    double m_fontSize = 0;   ///< the largest, in pixels
    double m_fontFactor = 1; ///< the largest factor of a relative size
    int m_textDepth = 0;
    bool m_mayHaveDashes;
    double m_line = 0; ///< how long the lines of the last element may be
    double m_longestLine = 0;
    double m_shortestDashes = std::numeric_limits<double>::infinity();
};

} // namespace

Result<Done> SvgGuard::check(const QByteArray& document) {
    if (document.size() > maximumBytes)
        return tooLarge(QStringLiteral("is larger than %1 MiB").arg(maximumBytes >> 20));
    return unlessMemoryIsShort([&] { return Pass(document).check(); });
}

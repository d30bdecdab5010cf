#include "imaging/svg/SvgContent.h"

#include "base/ShortMemory.h"
#include "imaging/svg/SvgFonts.h"
#include "imaging/svgpipe/SvgMessages.h"

#include <QByteArrayView>
#include <QStringDecoder>

#include <optional>
#include <utility>
#include <vector>

namespace {

Error tooLarge(const QString& sentence) {
    return {ErrorCode::TooLarge, QStringLiteral("the SVG document ") + sentence};
}

/// The document in an encoding whose markup is ASCII.
QByteArray inAscii(const QByteArray& document) {
    using enum QStringConverter::Encoding;
    const auto decoded = [&](QStringConverter::Encoding encoding) {
        return QString(QStringDecoder(encoding)(document)).toUtf8();
    };
    if (document.startsWith("\xff\xfe") || document.startsWith(QByteArrayView("<\0", 2)))
        return decoded(Utf16LE);
    if (document.startsWith("\xfe\xff") || document.startsWith(QByteArrayView("\0<", 2)))
        return decoded(Utf16BE);
    return document;
}

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

/// A name without its prefix.
QByteArrayView localName(QByteArrayView name) {
    return name.sliced(name.lastIndexOf(':') + 1);
}

/// An element that is open.
struct Open {
    QByteArrayView name;
    bool isText = false; ///< whether it is a text, or in one
    QByteArray fontFamilies;
    bool areFontsOfStyle = false;

    /// The attribute `style` prevails.
    void setFonts(const QByteArray& families, bool areOfStyle) {
        if (areFontsOfStyle > areOfStyle || families == "inherit")
            return;
        fontFamilies = families;
        areFontsOfStyle = areOfStyle;
    }
};

/// Goes through the marks of a document, whether it is well-formed or not.
class Scan {
  public:
    explicit Scan(QByteArrayView text) : m_text(text) {}

    Result<SvgContent> run() {
        while (!m_error) {
            const qsizetype start = m_at;
            m_at = find("<");
            takeCharacters(m_text.sliced(start, m_at - start));
            if (m_at == m_text.size())
                return content();
            takeMark();
        }
        return *m_error;
    }

  private:
    /// The place of `words` from here on, or the end.
    qsizetype find(QByteArrayView words, qsizetype further = 0) const {
        const qsizetype found = m_text.indexOf(words, m_at + further);
        return found >= 0 ? found : m_text.size();
    }
    /// Goes on behind `words`.
    void skipTo(QByteArrayView words, qsizetype further) {
        m_at = std::min(m_text.size(), find(words, further) + words.size());
    }
    bool isAt(QByteArrayView words) const { return m_text.sliced(m_at).startsWith(words); }

    void takeMark() {
        if (isAt("<!--")) {
            skipTo("-->", 4);
        } else if (isAt("<![CDATA[")) {
            const qsizetype start = m_at;
            skipTo("]]>", 9);
            takeStyle(m_text.sliced(start, m_at - start));
            takeCharacters(m_text.sliced(start, m_at - start));
        } else if (isAt("<?")) {
            skipTo("?>", 2);
        } else if (isAt("<!DOCTYPE")) {
            takeDocumentType();
        } else if (isAt("</")) {
            --m_depth;
            m_open.resize(std::max<std::size_t>(m_open.size(), 1) - 1);
            skipTo(">", 2);
        } else {
            takeElement();
        }
    }

    /// An external entity may be declared anywhere up to the root element, also where quotes or comments are
    /// out of order.
    void takeDocumentType() {
        const qsizetype start = m_at;
        int brackets = 0;
        for (m_at += 9; m_at < m_text.size() && (brackets > 0 || m_text[m_at] != '>'); ++m_at) {
            const char c = m_text[m_at];
            if (isAt("<!--"))
                m_at = find("-->", 4) + 2;
            else if (isAt("<?"))
                m_at = find("?>", 2) + 1;
            else if (c == '"' || c == '\'')
                m_at = find(QByteArrayView(&c, 1), 1);
            else
                brackets += c == '[' ? 1 : c == ']' ? -1 : 0;
        }
        m_at = std::min(m_at, m_text.size());
        const QByteArrayView type = m_text.sliced(start, m_at - start);
        for (qsizetype at = type.indexOf("<!ENTITY"); at >= 0; at = type.indexOf("<!ENTITY", at + 8)) {
            qsizetype end = at;
            while (end < type.size() && type[end] != '>' && type[end] != '"' && type[end] != '\'')
                ++end;
            const QByteArrayView declaration = type.sliced(at, end - at);
            if (declaration.contains("SYSTEM") || declaration.contains("PUBLIC"))
                m_error = Error{ErrorCode::Unsupported,
                                QStringLiteral("the SVG document declares an external entity")};
        }
    }

    void takeElement() {
        const qsizetype start = ++m_at;
        while (m_at < m_text.size() && !isSpace(m_text[m_at]) && m_text[m_at] != '>' && m_text[m_at] != '/')
            ++m_at;
        const QByteArrayView name = localName(m_text.sliced(start, m_at - start));
        Open open = m_open.empty() ? Open{} : m_open.back();
        open.isText = open.isText || name == "text";
        open.name = name;
        open.areFontsOfStyle = false;
        bool isConditional = false;
        while (m_at < m_text.size() && m_text[m_at] != '>' && m_text[m_at] != '<') {
            const auto [attribute, value] = takeAttribute();
            takeValue(open, attribute, value);
            isConditional = isConditional || attribute == "requiredExtensions";
        }
        const bool isEmpty = m_text[std::min(m_at, m_text.size()) - 1] == '/';
        if (m_at < m_text.size() && m_text[m_at] == '>')
            ++m_at;
        // What stands in a switch has another form beside it.
        const bool isInSwitch = !m_open.empty() && m_open.back().name == "switch";
        if (name == "foreignObject" && !isConditional && !isInSwitch)
            m_hasForeignObject = true;
        if (isEmpty)
            return;
        m_open.push_back(std::move(open));
        if (++m_depth > SvgContent::maximumDepth)
            m_error =
                tooLarge(QStringLiteral("is nested deeper than %1 elements").arg(SvgContent::maximumDepth));
        if (name == "style") {
            const qsizetype text = m_at;
            m_at = find("</");
            takeStyle(m_text.sliced(text, m_at - text));
            for (const QByteArray& families : SvgFonts::ofStyle(m_text.sliced(text, m_at - text)))
                m_fontsOfSheets.add(families);
        }
    }

    /// What stands between marks.
    void takeCharacters(QByteArrayView characters) {
        if (m_open.empty() || !m_open.back().isText || characters.trimmed().isEmpty())
            return;
        m_hasText = true;
        m_fonts.add(m_open.back().fontFamilies);
    }

    /// The attribute that begins here; without a name at any other mark.
    std::pair<QByteArrayView, QByteArrayView> takeAttribute() {
        const qsizetype start = m_at;
        while (m_at < m_text.size() && !isSpace(m_text[m_at]) && m_text[m_at] != '=' && m_text[m_at] != '>' &&
               m_text[m_at] != '/' && m_text[m_at] != '<')
            ++m_at;
        const QByteArrayView name = m_text.sliced(start, m_at - start);
        while (m_at < m_text.size() && isSpace(m_text[m_at]))
            ++m_at;
        if (name.isEmpty() || m_at >= m_text.size() || m_text[m_at] != '=') {
            m_at += name.isEmpty() && m_at == start ? 1 : 0;
            return {name, {}};
        }
        ++m_at;
        while (m_at < m_text.size() && isSpace(m_text[m_at]))
            ++m_at;
        if (m_at >= m_text.size() || (m_text[m_at] != '"' && m_text[m_at] != '\''))
            return {name, {}};
        const char quote = m_text[m_at++];
        const qsizetype value = m_at;
        m_at = find(QByteArrayView(&quote, 1));
        const QByteArrayView text = m_text.sliced(value, m_at - value);
        m_at = std::min(m_at + 1, m_text.size());
        return {name, text};
    }

    void takeValue(Open& open, QByteArrayView attribute, QByteArrayView value) {
        if (localName(attribute) == "href") {
            const QByteArrayView link = value.trimmed();
            const bool isInside =
                link.isEmpty() || link.startsWith('#') ||
                link.first(std::min<qsizetype>(5, link.size())).compare("data:", Qt::CaseInsensitive) == 0;
            // An entity may stand for anything.
            if (!isInside && !link.startsWith('&') &&
                (open.name == "image" || open.name == "feImage" || open.name == "use")) {
                const QString text = QString::fromUtf8(link.first(std::min<qsizetype>(link.size(), 200)));
                if (!m_links.contains(text))
                    m_links << text;
            }
            return;
        }
        takeStyle(value);
        if (attribute == "style") {
            if (const std::vector<QByteArray> families = SvgFonts::ofStyle(value); !families.empty())
                open.setFonts(families.back(), true);
        } else if (attribute == "font-family") {
            open.setFonts(value.toByteArray(), false);
        }
    }

    void takeStyle(QByteArrayView style) { m_hasVariables = m_hasVariables || style.contains("var("); }

    SvgContent content() {
        SvgContent found;
        if (!m_links.isEmpty())
            found.leftOut << QStringLiteral("the picture shows nothing of the files that it links to: %1")
                                 .arg(SvgContent::listed(m_links));
        if (m_hasForeignObject)
            found.leftOut << QStringLiteral("the picture's foreignObject is left out");
        if (m_hasVariables)
            found.leftOut << QStringLiteral("the picture has styles with var(), which are left out");
        // Which texts a style sheet means is not looked at.
        if (m_hasText) {
            for (const QStringList& names : m_fontsOfSheets.lists())
                m_fonts.add(names);
            found.fonts = m_fonts.lists();
        }
        return found;
    }

    QByteArrayView m_text;
    qsizetype m_at = 0;
    std::optional<Error> m_error;
    int m_depth = 0;
    std::vector<Open> m_open;
    bool m_hasText = false;
    SvgFonts m_fonts;         ///< of texts, by their attributes
    SvgFonts m_fontsOfSheets; ///< of style sheets
    QStringList m_links;
    bool m_hasForeignObject = false;
    bool m_hasVariables = false;
};

} // namespace

QString SvgContent::listed(const QStringList& names) {
    constexpr qsizetype most = 3;
    const QString first = names.first(std::min(most, names.size())).join(QLatin1String(", "));
    return names.size() > most ? QStringLiteral("%1 and %2 more").arg(first).arg(names.size() - most) : first;
}

Result<SvgContent> SvgContent::of(const QByteArray& document) {
    if (static_cast<std::uint64_t>(document.size()) > SvgPipe::mostDocumentBytes)
        return tooLarge(QStringLiteral("is larger than %1 MiB").arg(SvgPipe::mostDocumentBytes >> 20));
    return unlessMemoryIsShort([&] {
        const QByteArray text = inAscii(document);
        return Scan(text).run();
    });
}

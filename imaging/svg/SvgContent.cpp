#include "imaging/svg/SvgContent.h"

#include "base/ShortMemory.h"
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

/// Goes through the marks of a document, whether it is well-formed or not.
class Scan {
  public:
    explicit Scan(QByteArrayView text) : m_text(text) {}

    Result<QStringList> run() {
        while (!m_error && (m_at = find("<")) < m_text.size())
            takeMark();
        if (m_error)
            return *m_error;
        return sentences();
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
            takeText(m_text.sliced(start, m_at - start));
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
        bool isConditional = false;
        while (m_at < m_text.size() && m_text[m_at] != '>' && m_text[m_at] != '<') {
            const auto [attribute, value] = takeAttribute();
            takeValue(name, attribute, value);
            isConditional = isConditional || attribute == "requiredExtensions";
        }
        const bool isEmpty = m_text[std::min(m_at, m_text.size()) - 1] == '/';
        // What stands in a switch has another form beside it.
        const bool isInSwitch = !m_open.empty() && m_open.back() == "switch";
        if (name == "foreignObject" && !isConditional && !isInSwitch)
            m_hasForeignObject = true;
        if (isEmpty)
            return;
        m_open.push_back(name);
        if (++m_depth > SvgContent::maximumDepth)
            m_error =
                tooLarge(QStringLiteral("is nested deeper than %1 elements").arg(SvgContent::maximumDepth));
        if (name == "style") {
            const qsizetype text = m_at;
            m_at = find("</");
            takeText(m_text.sliced(text, m_at - text));
        }
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

    void takeValue(QByteArrayView element, QByteArrayView attribute, QByteArrayView value) {
        if (localName(attribute) == "href") {
            const QByteArrayView link = value.trimmed();
            const bool isInside =
                link.isEmpty() || link.startsWith('#') ||
                link.first(std::min<qsizetype>(5, link.size())).compare("data:", Qt::CaseInsensitive) == 0;
            // An entity may stand for anything.
            if (!isInside && !link.startsWith('&') &&
                (element == "image" || element == "feImage" || element == "use")) {
                const QString text = QString::fromUtf8(link.first(std::min<qsizetype>(link.size(), 200)));
                if (!m_links.contains(text))
                    m_links << text;
            }
        } else {
            takeText(value);
        }
    }

    void takeText(QByteArrayView style) { m_hasVariables = m_hasVariables || style.contains("var("); }

    QStringList sentences() const {
        QStringList found;
        constexpr qsizetype mostNames = 3;
        if (!m_links.isEmpty()) {
            const QString names =
                m_links.first(std::min(mostNames, m_links.size())).join(QLatin1String(", "));
            found << (m_links.size() > mostNames
                          ? QStringLiteral(
                                "the picture shows nothing of the files that it links to: %1 and %2 more")
                                .arg(names)
                                .arg(m_links.size() - mostNames)
                          : QStringLiteral("the picture shows nothing of the files that it links to: %1")
                                .arg(names));
        }
        if (m_hasForeignObject)
            found << QStringLiteral("the picture's foreignObject is left out");
        if (m_hasVariables)
            found << QStringLiteral("the picture has styles with var(), which are left out");
        return found;
    }

    QByteArrayView m_text;
    qsizetype m_at = 0;
    std::optional<Error> m_error;
    int m_depth = 0;
    std::vector<QByteArrayView> m_open; ///< the names of the elements that are open
    QStringList m_links;
    bool m_hasForeignObject = false;
    bool m_hasVariables = false;
};

} // namespace

Result<QStringList> SvgContent::leftOut(const QByteArray& document) {
    if (static_cast<std::uint64_t>(document.size()) > SvgPipe::mostDocumentBytes)
        return tooLarge(QStringLiteral("is larger than %1 MiB").arg(SvgPipe::mostDocumentBytes >> 20));
    return unlessMemoryIsShort([&] {
        const QByteArray text = inAscii(document);
        return Scan(text).run();
    });
}

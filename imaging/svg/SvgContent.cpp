#include "imaging/svg/SvgContent.h"

#include "base/ShortMemory.h"

#include <expat.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace {

Error tooLarge(const QString& sentence) {
    return {ErrorCode::TooLarge, QStringLiteral("the SVG document ") + sentence};
}

/// Whether an external entity is declared anywhere, also where quotes or comments are out of order. Parsers
/// of XML do not agree on documents that are not well-formed, so none of them is asked.
bool declaresExternalEntity(QByteArray document) {
    // The markup of UTF-16 and UTF-32 is ASCII with zeros.
    if (document.contains('\0'))
        document.replace(QByteArrayView("\0", 1), QByteArrayView());
    for (qsizetype at = document.indexOf("<!ENTITY"); at >= 0; at = document.indexOf("<!ENTITY", at + 1)) {
        qsizetype end = at + 1;
        while (end < document.size() && !QByteArrayView("<>\"'").contains(document[end]))
            ++end;
        const QByteArrayView declaration = QByteArrayView(document).sliced(at, end - at);
        if (declaration.contains("SYSTEM") || declaration.contains("PUBLIC"))
            return true;
    }
    return false;
}

/// A name without its prefix.
std::string_view localName(std::string_view name) {
    return name.substr(name.rfind(':') + 1);
}

/// Goes through a document for what is not drawn.
class Scan {
  public:
    Scan() {
        if (m_parser == nullptr)
            throw std::bad_alloc();
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(m_parser.get(), guarded<&Scan::takeElement, const char*, const char**>,
                              guarded<&Scan::endElement, const char*>);
        XML_SetCharacterDataHandler(m_parser.get(), guarded<&Scan::takeText, const char*, int>);
        // Of encodings with a byte a character the markup is ASCII.
        const auto takeBytes = [](void* /*data*/, const char* /*name*/, XML_Encoding* encoding) {
            std::iota(std::begin(encoding->map), std::end(encoding->map), 0);
            return static_cast<int>(XML_STATUS_OK);
        };
        XML_SetUnknownEncodingHandler(m_parser.get(), takeBytes, nullptr);
    }

    Result<QStringList> run(const QByteArray& document) {
        XML_Parse(m_parser.get(), document.data(), static_cast<int>(document.size()), XML_TRUE);
        if (!m_state)
            return m_state.error();
        if (XML_GetErrorCode(m_parser.get()) == XML_ERROR_NO_MEMORY)
            return outOfMemory();
        QStringList sentences;
        if (!m_links.isEmpty())
            sentences << QStringLiteral("the picture shows nothing of the files that it links to: %1")
                             .arg(SvgContent::listed(m_links));
        if (m_hasForeignObject)
            sentences << QStringLiteral("the picture's foreignObject is left out");
        if (m_hasVariables)
            sentences << QStringLiteral("the picture has styles with var(), which are left out");
        return sentences;
    }

  private:
    /// Calls a method for the parser, through which no exception may pass. After an error nothing is taken:
    /// the parser may call once or twice after its stop.
    template <auto method, typename... Arguments>
    static void guarded(void* data, Arguments... arguments) {
        auto& scan = *static_cast<Scan*>(data);
        if (scan.m_state)
            scan.m_state = unlessMemoryIsShort([&] { return (scan.*method)(arguments...); });
        if (!scan.m_state)
            XML_StopParser(scan.m_parser.get(), XML_FALSE);
    }

    /// `attributes` are names and values in turn, and null at their end.
    Result<Done> takeElement(const char* qualifiedName, const char** attributes) {
        const std::string_view name = localName(qualifiedName);
        bool isConditional = false;
        for (; *attributes != nullptr; attributes += 2) {
            const std::string_view attribute = attributes[0];
            if (localName(attribute) == "href" && (name == "image" || name == "feImage" || name == "use"))
                takeLink(QByteArrayView(attributes[1]).trimmed());
            takeStyle(attributes[1]);
            isConditional = isConditional || attribute == "requiredExtensions";
        }
        // What stands in a switch has another form beside it.
        if (name == "foreignObject" && !isConditional && (m_open.empty() || m_open.back() != "switch"))
            m_hasForeignObject = true;
        m_open.emplace_back(name);
        if (m_open.size() > SvgContent::maximumDepth)
            return tooLarge(
                QStringLiteral("is nested deeper than %1 elements").arg(SvgContent::maximumDepth));
        return Done{};
    }

    void endElement(const char* /*name*/) { m_open.pop_back(); }

    void takeText(const char* text, int length) {
        if (m_open.back() == "style")
            takeStyle({text, static_cast<std::size_t>(length)});
    }

    void takeStyle(std::string_view style) {
        m_hasVariables = m_hasVariables || style.find("var(") != std::string_view::npos;
    }

    void takeLink(QByteArrayView link) {
        if (link.isEmpty() || link.startsWith('#') ||
            QLatin1String(link).startsWith(QLatin1String("data:"), Qt::CaseInsensitive))
            return;
        constexpr qsizetype mostLinks = 1000;
        constexpr qsizetype mostBytes = 200;
        const QString text = QString::fromUtf8(link.first(std::min(mostBytes, link.size())));
        if (m_links.size() < mostLinks && !m_links.contains(text))
            m_links << text;
    }

    std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> m_parser{XML_ParserCreate(nullptr),
                                                                          XML_ParserFree};
    Result<Done> m_state = Done{};
    std::vector<std::string> m_open; ///< the elements that the parser is in
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

Result<QStringList> SvgContent::leftOut(const QByteArray& document) {
    if (document.size() > mostBytes)
        return tooLarge(QStringLiteral("is larger than %1 MiB").arg(mostBytes >> 20));
    return unlessMemoryIsShort([&]() -> Result<QStringList> {
        if (declaresExternalEntity(document))
            return Error{ErrorCode::Unsupported,
                         QStringLiteral("the SVG document declares an external entity")};
        return Scan().run(document);
    });
}

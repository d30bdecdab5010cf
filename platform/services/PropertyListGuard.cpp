#include "platform/services/PropertyListGuard.h"

#include <QXmlStreamReader>

#include <vector>

namespace {

Error tooLarge() {
    return {ErrorCode::Malformed,
            QStringLiteral("a property list that is nested too deep or has too many objects")};
}

/// Reads how the objects of a binary list refer to each other. Every position is checked against the list's
/// size.
class BinaryList {
  public:
    explicit BinaryList(const QByteArray& list) : m_list(list) {
        constexpr qsizetype trailerSize = 32;
        constexpr qsizetype headerSize = 8;
        if (list.size() < headerSize + trailerSize)
            return;
        const qsizetype trailer = list.size() - trailerSize;
        m_offsetSize = static_cast<quint8>(list[trailer + 6]);
        m_referenceSize = static_cast<quint8>(list[trailer + 7]);
        m_objects = number(trailer + 8, 8);
        m_top = number(trailer + 16, 8);
        m_table = number(trailer + 24, 8);
        m_isValid = m_offsetSize >= 1 && m_offsetSize <= 8 && m_referenceSize >= 1 && m_referenceSize <= 8 &&
                    m_table <= static_cast<quint64>(trailer) &&
                    m_objects <= static_cast<quint64>(list.size()) &&
                    m_objects * m_offsetSize <= static_cast<quint64>(trailer) - m_table && m_top < m_objects;
    }

    bool isValid() const { return m_isValid; }
    quint64 top() const { return m_top; }

    /// The numbers of the objects that object `index` holds. Empty for an object that is no collection. No
    /// value where a part of the object lies outside of the list, or where it is a text with a NUL.
    std::optional<std::vector<quint64>> children(quint64 index) const {
        if (index >= m_objects)
            return std::nullopt;
        const auto size = static_cast<quint64>(m_list.size());
        const quint64 at = number(static_cast<qsizetype>(m_table + index * m_offsetSize), m_offsetSize);
        if (at >= size)
            return std::nullopt;
        const quint64 marker = byte(at);
        const quint64 kind = marker >> 4;
        constexpr quint64 integerKind = 0x1;
        constexpr quint64 asciiKind = 0x5;
        constexpr quint64 utf16Kind = 0x6;
        constexpr quint64 arrayKind = 0xA;
        constexpr quint64 setKind = 0xC;
        constexpr quint64 dictionaryKind = 0xD;
        const bool isText = kind == asciiKind || kind == utf16Kind;
        if (!isText && kind != arrayKind && kind != setKind && kind != dictionaryKind)
            return std::vector<quint64>();
        quint64 count = marker & 0xF;
        quint64 references = at + 1;
        if (count == 0xF) {
            // The count follows as an integer object of at most eight bytes.
            if (references >= size || byte(references) >> 4 != integerKind || (byte(references) & 0xF) > 3)
                return std::nullopt;
            const quint64 width = quint64{1} << (byte(references) & 0xF);
            if (width > size - references - 1)
                return std::nullopt;
            count = number(static_cast<qsizetype>(references + 1), width);
            references += 1 + width;
        }
        if (isText) {
            if (!isTextWithoutNul(references, count, kind == utf16Kind ? 2 : 1))
                return std::nullopt;
            return std::vector<quint64>();
        }
        const quint64 total = kind == dictionaryKind ? 2 * count : count;
        if (count > size || total * m_referenceSize > size - references)
            return std::nullopt;
        std::vector<quint64> found;
        found.reserve(total);
        for (quint64 i = 0; i < total; ++i)
            found.push_back(
                number(static_cast<qsizetype>(references + i * m_referenceSize), m_referenceSize));
        return found;
    }

  private:
    /// Whether all `count` units of `width` bytes lie inside the list, and no unit is 0. No name needs a unit
    /// of 0, and libplist ends the process for one.
    bool isTextWithoutNul(quint64 at, quint64 count, quint64 width) const {
        const auto size = static_cast<quint64>(m_list.size());
        if (count > size || at > size || count * width > size - at)
            return false;
        for (quint64 i = 0; i < count; ++i) {
            if (number(static_cast<qsizetype>(at + i * width), width) == 0)
                return false;
        }
        return true;
    }

    quint64 byte(quint64 at) const { return static_cast<quint8>(m_list[static_cast<qsizetype>(at)]); }

    quint64 number(qsizetype at, quint64 width) const {
        quint64 value = 0;
        for (qsizetype i = 0; i < static_cast<qsizetype>(width); ++i)
            value = value << 8 | static_cast<quint8>(m_list[at + i]);
        return value;
    }

    const QByteArray& m_list;
    quint64 m_offsetSize = 0;
    quint64 m_referenceSize = 0;
    quint64 m_objects = 0;
    quint64 m_top = 0;
    quint64 m_table = 0;
    bool m_isValid = false;
};

} // namespace

std::optional<Error> PropertyListGuard::refusedXml(const QByteArray& list) {
    QXmlStreamReader reader(list);
    int depth = 0;
    int objects = 0;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartElement) {
            if (depth == 0 && reader.name() != QLatin1String("plist"))
                break;
            // Two levels more: the plist element itself is one, and a value at the deepest level is another.
            if (++depth > maximumDepth + 2 || ++objects > maximumObjects)
                return tooLarge();
        } else if (token == QXmlStreamReader::DTD && reader.text().contains(u'[')) {
            // Parsers read declarations in the document type differently. Property lists need no
            // declarations.
            return Error{ErrorCode::Malformed,
                         QStringLiteral("a property list with declarations of its own")};
        } else if (token == QXmlStreamReader::EndElement) {
            --depth;
        }
    }
    if (reader.hasError() || objects == 0)
        return Error{ErrorCode::Malformed, QStringLiteral("not a property list")};
    return std::nullopt;
}

std::optional<Error> PropertyListGuard::refusedBinary(const QByteArray& list) {
    const BinaryList objects(list);
    if (!objects.isValid())
        return Error{ErrorCode::Malformed, QStringLiteral("not a property list")};
    struct Visit {
        quint64 object;
        int depth;
    };
    std::vector<Visit> open{{objects.top(), 0}};
    int visited = 0;
    while (!open.empty()) {
        const Visit visit = open.back();
        open.pop_back();
        // This limit also stops at a list that holds itself.
        if (visit.depth > maximumDepth || ++visited > maximumObjects)
            return tooLarge();
        const std::optional<std::vector<quint64>> children = objects.children(visit.object);
        if (!children)
            return Error{ErrorCode::Malformed, QStringLiteral("not a property list")};
        for (const quint64 child : *children)
            open.push_back({child, visit.depth + 1});
        if (open.size() > maximumObjects)
            return tooLarge();
    }
    return std::nullopt;
}

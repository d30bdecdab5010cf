#include "platform/services/PropertyListGuard.h"

#include "base/ByteReader.h"

#include <QXmlStreamReader>

#include <optional>
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
        constexpr qsizetype headerSize = 8;
        const qsizetype trailerAt = list.size() - qsizetype{sizeof(Trailer)};
        const auto trailer = trailerAt >= headerSize ? m_list.record<Trailer>(trailerAt) : std::nullopt;
        if (!trailer || !isWidth(trailer->offsetSize) || !isWidth(trailer->referenceSize) ||
            trailer->top >= trailer->objectCount)
            return;
        m_offsetSize = trailer->offsetSize;
        m_referenceSize = trailer->referenceSize;
        m_top = trailer->top;
        m_offsets =
            m_list.slice(0, trailerAt)
                ->slice(trailer->offsetTable, ByteCount(trailer->objectCount) * ByteCount(m_offsetSize));
    }

    bool isValid() const { return m_offsets.has_value(); }
    quint64 top() const { return m_top; }

    /// The numbers of the objects that object `index` holds. Empty for an object that is no collection. No
    /// value where a part of the object lies outside of the list, or where it is a text with a NUL.
    std::optional<std::vector<quint64>> children(quint64 index) const {
        const auto at = m_offsets->number(ByteCount(index) * m_offsetSize, m_offsetSize, std::endian::big);
        const auto object = at ? m_list.from(*at) : std::nullopt;
        const auto marker = object ? object->bigEndian<quint8>(0) : std::nullopt;
        if (!marker)
            return std::nullopt;
        const int kind = *marker >> 4;
        constexpr int integerKind = 0x1;
        constexpr int asciiKind = 0x5;
        constexpr int utf16Kind = 0x6;
        constexpr int arrayKind = 0xA;
        constexpr int setKind = 0xC;
        constexpr int dictionaryKind = 0xD;
        const bool isText = kind == asciiKind || kind == utf16Kind;
        if (!isText && kind != arrayKind && kind != setKind && kind != dictionaryKind)
            return std::vector<quint64>();
        ByteCount count = *marker & 0xF;
        auto contents = object->from(1);
        if ((*marker & 0xF) == 0xF) {
            // The count follows as an integer object of at most eight bytes.
            const auto integer = contents->bigEndian<quint8>(0);
            if (!integer || *integer >> 4 != integerKind || (*integer & 0xF) > 3)
                return std::nullopt;
            const qsizetype width = qsizetype{1} << (*integer & 0xF);
            const auto told = contents->number(1, width, std::endian::big);
            if (!told)
                return std::nullopt;
            count = *told;
            contents = contents->from(1 + width);
        }
        if (isText) {
            if (!isTextWithoutNul(*contents, count, kind == utf16Kind ? 2 : 1))
                return std::nullopt;
            return std::vector<quint64>();
        }
        const ByteCount total = kind == dictionaryKind ? ByteCount(2) * count : count;
        return numbers(*contents, total, m_referenceSize);
    }

  private:
    /// What a binary list ends with.
    struct Trailer {
        char unused[6];
        quint8 offsetSize;
        quint8 referenceSize;
        quint64_be objectCount;
        quint64_be top;
        quint64_be offsetTable;
    };
    static_assert(sizeof(Trailer) == 32);

    static bool isWidth(quint8 size) { return size >= 1 && size <= sizeof(quint64); }

    /// The `count` numbers of `width` bytes each at the start of `bytes`. No value where they break off.
    static std::optional<std::vector<quint64>> numbers(const ByteReader& bytes, ByteCount count,
                                                       qsizetype width) {
        const auto all = bytes.slice(0, count * width);
        if (!all)
            return std::nullopt;
        std::vector<quint64> found;
        found.reserve(static_cast<std::size_t>(count.value()));
        for (qsizetype at = 0; at < all->size(); at += width)
            found.push_back(*all->number(at, width, std::endian::big));
        return found;
    }

    /// Whether all `count` units of `width` bytes lie inside the list, and no unit is 0. No name needs a unit
    /// of 0, and libplist ends the process for one.
    static bool isTextWithoutNul(const ByteReader& bytes, ByteCount count, qsizetype width) {
        const auto text = bytes.slice(0, count * width);
        if (!text)
            return false;
        for (qsizetype at = 0; at < text->size(); at += width) {
            if (text->number(at, width, std::endian::big) == 0U)
                return false;
        }
        return true;
    }

    ByteReader m_list;
    std::optional<ByteReader> m_offsets;
    qsizetype m_offsetSize = 0;
    qsizetype m_referenceSize = 0;
    quint64 m_top = 0;
};

} // namespace

Result<Done> PropertyListGuard::checkXml(const QByteArray& list) {
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
    return Done{};
}

Result<Done> PropertyListGuard::checkBinary(const QByteArray& list) {
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
    return Done{};
}

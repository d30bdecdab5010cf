#include "platform/services/PropertyList.h"

#include "base/ShortMemory.h"
#include "platform/services/PropertyListGuard.h"
#include "platform/services/PropertyListText.h"

#include <QDateTime>
#include <QTimeZone>

#include <plist/plist.h>

#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>

namespace {

struct PlistFree {
    void operator()(void* node) const { plist_free(node); }
};

struct MallocFree {
    void operator()(void* memory) const { std::free(memory); } // NOLINT(cppcoreguidelines-no-malloc)
};

/// A string or buffer that libplist has allocated with malloc. The caller frees it.
using PlistText = std::unique_ptr<char, MallocFree>;

std::optional<QVariant> toVariant(plist_t node, int depth);

std::optional<QVariant> arrayToVariant(plist_t node, int depth) {
    QVariantList list;
    const uint32_t count = plist_array_get_size(node);
    for (uint32_t i = 0; i < count; ++i) {
        std::optional<QVariant> item = toVariant(plist_array_get_item(node, i), depth + 1);
        if (!item)
            return std::nullopt;
        list.append(std::move(*item));
    }
    return QVariant(list);
}

std::optional<QVariant> dictionaryToVariant(plist_t node, int depth) {
    QVariantMap map;
    plist_dict_iter rawIterator = nullptr;
    plist_dict_new_iter(node, &rawIterator);
    const std::unique_ptr<void, MallocFree> iterator(rawIterator);
    for (;;) {
        char* rawKey = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, iterator.get(), &rawKey, &value);
        const PlistText key(rawKey);
        if (value == nullptr)
            return QVariant(map);
        std::optional<QVariant> item = toVariant(value, depth + 1);
        if (!item)
            return std::nullopt;
        map.insert(QString::fromUtf8(key.get()), *item);
    }
}

QVariant stringToVariant(plist_t node) {
    // This call gives the length too. Other calls of libplist end the process where a string holds a NUL.
    uint64_t length = 0;
    const char* text = plist_get_string_ptr(node, &length);
    return QString::fromUtf8(text, static_cast<qsizetype>(length));
}

QVariant integerToVariant(plist_t node) {
    uint64_t value = 0;
    plist_get_uint_val(node, &value);
    return QVariant::fromValue(static_cast<qint64>(value));
}

QVariant dataToVariant(plist_t node) {
    char* raw = nullptr;
    uint64_t length = 0;
    plist_get_data_val(node, &raw, &length);
    const PlistText data(raw);
    return QByteArray(data.get(), static_cast<qsizetype>(length));
}

QVariant dateToVariant(plist_t node) {
    int32_t seconds = 0;
    int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    const QDateTime epoch = QDateTime(QDate(2001, 1, 1), QTime(0, 0), QTimeZone::utc()).toUTC();
    return epoch.addSecs(seconds).addMSecs(microseconds / 1000);
}

/// No value for a list that is nested too deep or holds a node of an unknown kind.
std::optional<QVariant> toVariant(plist_t node, int depth) {
    if (depth > PropertyListGuard::maximumDepth)
        return std::nullopt;
    switch (plist_get_node_type(node)) {
    case PLIST_ARRAY:
        return arrayToVariant(node, depth);
    case PLIST_DICT:
        return dictionaryToVariant(node, depth);
    case PLIST_STRING:
        return stringToVariant(node);
    case PLIST_UINT:
        return integerToVariant(node);
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return QVariant(value);
    }
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return QVariant(value != 0);
    }
    case PLIST_DATA:
        return dataToVariant(node);
    case PLIST_DATE:
        return dateToVariant(node);
    default:
        return std::nullopt;
    }
}

Result<QVariant> parsed(const QByteArray& bytes) {
    const Error malformed{ErrorCode::Malformed, QStringLiteral("not a property list")};
    // The first bytes tell whether the list is binary. Without this check libplist would guess.
    const bool isBinary = bytes.startsWith("bplist00");
    constexpr qsizetype longest = std::numeric_limits<qint32>::max();
    if (bytes.size() > longest)
        return malformed;
    const Result<QByteArray> text = isBinary ? bytes : PropertyListText::inUtf8(bytes);
    if (!text)
        return text.error();
    const QByteArray& list = *text;
    if (list.size() > longest)
        return malformed;
    if (const Result<Done> allowed =
            isBinary ? PropertyListGuard::checkBinary(list) : PropertyListGuard::checkXml(list);
        !allowed)
        return allowed.error();
    const RefusedMemory memory;
    plist_t raw = nullptr;
    const auto length = static_cast<uint32_t>(list.size());
    if (isBinary)
        plist_from_bin(list.constData(), length, &raw);
    else
        plist_from_xml(list.constData(), length, &raw);
    const std::unique_ptr<void, PlistFree> root(raw);
    if (!root)
        return memory.wasSeen() ? outOfMemory() : malformed;
    std::optional<QVariant> value = toVariant(root.get(), 0);
    if (!value)
        return malformed;
    return std::move(*value);
}

} // namespace

Result<QVariant> PropertyList::parse(const QByteArray& bytes) {
    return unlessMemoryIsShort([&] { return parsed(bytes); });
}

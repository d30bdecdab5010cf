#include "layouts/Toml.h"

#include <algorithm>
#include <sstream>
#include <string_view>

// Errors are returned.
#define TOML_EXCEPTIONS 0
#define TOML_HEADER_ONLY 1
#include <toml++/toml.h>

namespace {

QString fromUtf8(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QVariantMap mapOf(const toml::table& table);

QVariant valueOf(const toml::node& node) {
    if (const toml::table* table = node.as_table())
        return mapOf(*table);
    if (const toml::array* array = node.as_array()) {
        QVariantList list;
        for (const toml::node& element : *array)
            list << valueOf(element);
        return list;
    }
    if (const auto* text = node.as_string())
        return fromUtf8(text->get());
    if (const auto* number = node.as_integer())
        return static_cast<qlonglong>(number->get());
    if (const auto* number = node.as_floating_point())
        return number->get();
    if (const auto* flag = node.as_boolean())
        return flag->get();
    std::ostringstream date;
    node.visit([&](const auto& value) { date << value; });
    return QString::fromStdString(date.str());
}

QVariantMap mapOf(const toml::table& table) {
    QVariantMap map;
    for (const auto& [key, node] : table)
        map.insert(fromUtf8(key.str()), valueOf(node));
    return map;
}

/// Whether a line has so many dots that its key could be nested too deeply: tables are freed by functions
/// that call themselves. The parser has a limit for values, and none for keys.
bool hasEndlessKey(std::string_view toml) {
    constexpr std::ptrdiff_t most = 2000;
    while (!toml.empty()) {
        const std::size_t end = std::min(toml.find('\n'), toml.size() - 1);
        if (std::ranges::count(toml.substr(0, end), '.') > most)
            return true;
        toml.remove_prefix(end + 1);
    }
    return false;
}

} // namespace

Result<QVariantMap> parsedToml(const QByteArray& bytes) {
    const std::string_view text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (hasEndlessKey(text))
        return Error{ErrorCode::Malformed, QStringLiteral("a key has too many parts")};
    const toml::parse_result parsed = toml::parse(text);
    if (parsed)
        return mapOf(parsed.table());
    const toml::source_position at = parsed.error().source().begin;
    return Error{ErrorCode::Malformed, QStringLiteral("line %1, column %2: %3")
                                           .arg(at.line)
                                           .arg(at.column)
                                           .arg(fromUtf8(parsed.error().description()))};
}

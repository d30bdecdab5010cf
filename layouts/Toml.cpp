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

/// Behind the string that begins at `at`, or at the line's end where a string of one line has no end.
std::size_t behindString(std::string_view toml, std::size_t at) {
    const char quote = toml[at];
    const std::string_view three = quote == '"' ? R"(""")" : "'''";
    const bool hasLines = toml.substr(at).starts_with(three);
    at += hasLines ? three.size() : 1;
    while (at < toml.size()) {
        if (toml[at] == '\\' && quote == '"') {
            at += 2;
        } else if (hasLines ? toml.substr(at).starts_with(three) : toml[at] == quote) {
            at += hasLines ? three.size() : 1;
            // Up to two quotes may stand before the three that end it.
            for (int i = 0; hasLines && i < 2 && at < toml.size() && toml[at] == quote; ++i)
                ++at;
            return at;
        } else if (!hasLines && toml[at] == '\n') {
            return at;
        } else {
            ++at;
        }
    }
    return toml.size();
}

/// Whether a byte outside of strings and comments is no ASCII. TOML allows none there, and toml++ 3.3 does
/// not end well with some.
bool hasStrayBytes(std::string_view toml) {
    for (std::size_t at = toml.starts_with("\xef\xbb\xbf") ? 3 : 0; at < toml.size();) {
        if (static_cast<unsigned char>(toml[at]) > 0x7f)
            return true;
        if (toml[at] == '#')
            at = std::min(toml.find('\n', at), toml.size());
        else if (toml[at] == '"' || toml[at] == '\'')
            at = behindString(toml, at);
        else
            ++at;
    }
    return false;
}

} // namespace

Result<QVariantMap> parsedToml(const QByteArray& bytes) {
    const std::string_view text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (hasEndlessKey(text))
        return Error{ErrorCode::Malformed, QStringLiteral("a key has too many parts")};
    if (hasStrayBytes(text))
        return Error{ErrorCode::Malformed,
                     QStringLiteral("only strings and comments may have letters beyond ASCII")};
    const toml::parse_result parsed = toml::parse(text);
    if (parsed)
        return mapOf(parsed.table());
    const toml::source_position at = parsed.error().source().begin;
    QString what = fromUtf8(parsed.error().description());
    // The parser's sentence names the macro that sets its limit.
    if (what.contains(QStringLiteral("TOML_MAX_NESTED_VALUES")))
        what = QStringLiteral("values are nested too deeply");
    return Error{ErrorCode::Malformed,
                 QStringLiteral("line %1, column %2: %3").arg(at.line).arg(at.column).arg(what)};
}

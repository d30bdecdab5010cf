#include "base/NumberText.h"

#include <QByteArrayView>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool beginsWith(std::string_view text, std::string_view word) {
    return text.size() >= word.size() && std::ranges::equal(text.substr(0, word.size()), word, {}, lower);
}

std::size_t digitsAt(std::string_view text, std::size_t at) {
    std::size_t end = at;
    while (end < text.size() && isDigit(text[end]))
        ++end;
    return end - at;
}

/// The length of the decimal number that `text` begins with; 0 if it begins with no number.
std::size_t decimalLength(std::string_view text) {
    std::size_t digits = digitsAt(text, 0);
    std::size_t end = digits;
    if (end < text.size() && text[end] == '.') {
        const std::size_t fraction = digitsAt(text, end + 1);
        digits += fraction;
        end += 1 + fraction;
    }
    if (digits == 0)
        return 0;
    if (end < text.size() && lower(text[end]) == 'e') {
        std::size_t exponent = end + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-'))
            ++exponent;
        if (const std::size_t count = digitsAt(text, exponent); count > 0)
            end = exponent + count;
    }
    return end;
}

/// The power of ten of a number's first digit other than 0. `text` is the whole number, without its sign, and
/// not 0. A power far beyond the range of a double may be another power far beyond it.
std::ptrdiff_t powerOfTen(std::string_view text) {
    const auto length = [](std::string_view part) { return static_cast<std::ptrdiff_t>(part.size()); };
    const std::string_view digits = text.substr(0, text.find_first_of("eE"));
    const std::ptrdiff_t point = length(digits.substr(0, digits.find('.')));
    const std::ptrdiff_t first = length(digits.substr(0, digits.find_first_not_of("0.")));
    const std::string_view exponent = text.substr(std::min(digits.size() + 1, text.size()));
    const bool isNegative = exponent.starts_with('-');
    std::ptrdiff_t power = 0;
    constexpr std::ptrdiff_t farAway = std::numeric_limits<std::int32_t>::max();
    for (const char c : exponent) {
        if (isDigit(c))
            power = std::min(10 * power + (c - '0'), farAway);
    }
    return (isNegative ? -power : power) + point - first;
}

/// The length of the payload that may follow "nan": letters, digits and underscores in parentheses.
std::size_t payloadLength(std::string_view text) {
    if (text.empty() || text[0] != '(')
        return 0;
    const auto end = std::ranges::find_if_not(text.begin() + 1, text.end(), [](char c) {
        return isDigit(c) || (lower(c) >= 'a' && lower(c) <= 'z') || c == '_';
    });
    return end != text.end() && *end == ')' ? static_cast<std::size_t>(end - text.begin()) + 1 : 0;
}

/// A number written as a word (infinity or nan), without its sign.
NumberText::Number word(std::string_view text) {
    if (beginsWith(text, "infinity"))
        return {std::numeric_limits<double>::infinity(), true, 8};
    if (beginsWith(text, "inf"))
        return {std::numeric_limits<double>::infinity(), true, 3};
    if (beginsWith(text, "nan"))
        return {std::numeric_limits<double>::quiet_NaN(), true, 3 + payloadLength(text.substr(3))};
    return {};
}

} // namespace

NumberText::Number NumberText::leading(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    if (isNegative)
        text.remove_prefix(1);
    Number number;
    number.length = decimalLength(text);
    if (number.length > 0) {
        const QByteArrayView digits(text.data(), static_cast<qsizetype>(number.length));
        number.value = digits.toDouble(&number.isInRange);
        if (!number.isInRange)
            number.value =
                powerOfTen(text.substr(0, number.length)) > 0 ? std::numeric_limits<double>::infinity() : 0;
    } else {
        number = word(text);
    }
    if (isNegative && number.length > 0) {
        number.value = -number.value;
        ++number.length;
    }
    return number;
}

#pragma once

#include "base/Color.h"

#include <QString>

#include <optional>
#include <string>
#include <variant>
#include <vector>

/// What is wrong with the command line.
struct UsageError {
    std::string sentence;
};

/// A value, or a complaint in its place.
template <typename T>
using Parsed = std::variant<T, UsageError>;

/// Moves a parsed value to `value`. If it is a complaint, stores that in `error` and returns false.
template <typename T>
bool take(const Parsed<T>& parsed, T& value, std::optional<UsageError>& error) {
    if (const auto* found = std::get_if<UsageError>(&parsed)) {
        error = *found;
        return false;
    }
    value = std::get<T>(parsed);
    return true;
}

/// Turns the words of a command line into values.
namespace OptionText {

/// A path as typed, in any bytes (see PathBytes); `what` names it in the complaint.
Parsed<QString> path(const std::string& text, const std::string& what);

/// A number from 0 to 1.
Parsed<float> fraction(const std::string& option, const std::string& text);

Parsed<Color> color(const std::string& text);

/// A colour without transparency.
Parsed<Color> opaqueColor(const std::string& option, const std::string& text);

/// The place of `word` in `words`, in any letter case. `kind` names in the complaint what there is:
/// "platform".
Parsed<std::size_t> choice(const std::string& kind, const std::string& word,
                           const std::vector<std::string>& words);

/// The same as a value of an enumeration whose values stand in the order of `words`.
template <typename Value>
Parsed<Value> valueOf(const std::string& kind, const std::string& word,
                      const std::vector<std::string>& words) {
    const Parsed<std::size_t> index = choice(kind, word, words);
    if (const auto* error = std::get_if<UsageError>(&index))
        return *error;
    return static_cast<Value>(std::get<std::size_t>(index));
}

/// The parts of "a,b,c".
std::vector<std::string> list(const std::string& text);

/// Whether both are equal in any letter case.
bool areSame(const std::string& a, const std::string& b);

} // namespace OptionText

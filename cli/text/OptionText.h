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

/// "; did you mean '…'?" with the word from `words` that is nearest to `word`.
std::string didYouMean(const std::string& word, const std::vector<std::string>& words);

} // namespace OptionText

#pragma once

#include <cstddef>
#include <string_view>

/// Parses numbers in texts. std::from_chars is not used: in some C++ libraries it reads integers only.
namespace NumberText {

struct Number {
    /// The double nearest to the number. If `isInRange` is false: infinity for a number that is too large, 0
    /// for one that is too close to 0, with the number's sign.
    double value = 0;
    /// False if the number is too large for a double, or closer to 0 than the smallest double.
    bool isInRange = true;
    /// The number of characters; 0 if the text does not begin with a number.
    std::size_t length = 0;
};

/// The number that `text` begins with, in the grammar of std::from_chars (ISO C++20, [charconv.from.chars]):
/// an optional minus; then digits with an optional point and an optional exponent, or one of the words inf,
/// infinity, nan and nan(…) in upper or lower case. It does not depend on the locale.
Number leading(std::string_view text);

} // namespace NumberText

#pragma once

#include <cstddef>
#include <string_view>

/// Numbers in texts. std::from_chars would do, which some C++ libraries have for whole numbers alone.
namespace NumberText {

struct Number {
    /// Where `isInRange`, the double that is nearest to the number; else without meaning.
    double value = 0;
    /// False for a number that is too large for a double, or nearer to 0 than all of them.
    bool isInRange = true;
    /// How many characters it has; 0 where the text does not begin with a number.
    std::size_t length = 0;
};

/// The number that `text` begins with, in the grammar of std::from_chars (ISO C++20, [charconv.from.chars]):
/// a minus or none, then digits with or without a point and an exponent, or one of the words inf, infinity,
/// nan and nan(…) in letters of either case. The locale has no say.
Number leading(std::string_view text);

} // namespace NumberText

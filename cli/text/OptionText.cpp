#include "cli/text/OptionText.h"

#include "base/Suggestion.h"
#include "cli/text/ColorText.h"
#include "files/PathBytes.h"

Parsed<QString> OptionText::path(const std::string& text, const std::string& what) {
    if (text.empty())
        return UsageError{what + " is empty"};
    return PathBytes::decoded(text);
}

Parsed<float> OptionText::fraction(const std::string& option, const std::string& text) {
    bool isNumber = false;
    const float value = QString::fromStdString(text).toFloat(&isNumber);
    if (!isNumber || !(value >= 0) || value > 1)
        return UsageError{option + " takes a fraction from 0 to 1, not '" + text + "'"};
    return value;
}

Parsed<Color> OptionText::color(const std::string& text) {
    if (const std::optional<Color> found = colorFromText(text))
        return *found;
    if (text.starts_with('#'))
        return UsageError{"'" + text + "' is not a colour of the form #RGB, #RRGGBB or #RRGGBBAA"};
    return UsageError{"there is no colour '" + text + "'" + didYouMean(text, colorNames())};
}

std::string OptionText::didYouMean(const std::string& word, const std::vector<std::string>& words) {
    return "; did you mean '" + nearestWord(word, words) + "'?";
}

#include "cli/text/OptionText.h"

#include "base/Suggestion.h"
#include "cli/text/ColorText.h"
#include "files/PathBytes.h"

#include <algorithm>
#include <cctype>

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
    const std::string start = "there is no colour '" + text + "'; ";
    if (colorFromText('#' + text))
        return UsageError{start + "did you mean '#" + text + "'?"};
    if (const std::string nearest = nearestWord(text, colorNames()); !nearest.empty())
        return UsageError{start + "did you mean '" + nearest + "'?"};
    return UsageError{start + "a colour is #RGB, #RRGGBB, #RRGGBBAA or a name such as steelblue"};
}

Parsed<Color> OptionText::opaqueColor(const std::string& option, const std::string& text) {
    Parsed<Color> parsed = color(text);
    if (const auto* found = std::get_if<Color>(&parsed); found != nullptr && found->alpha < 1)
        return UsageError{option + " takes an opaque colour, not '" + text + "'"};
    return parsed;
}

Parsed<std::size_t> OptionText::choice(const std::string& kind, const std::string& word,
                                       const std::vector<std::string>& words) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (areSame(word, words[i]))
            return i;
    }
    return UsageError{"there is no " + kind + " '" + word + "'" + suggestion(word, words)};
}

std::vector<std::string> OptionText::list(const std::string& text) {
    std::vector<std::string> parts{""};
    for (const char c : text) {
        if (c == ',')
            parts.emplace_back();
        else
            parts.back() += c;
    }
    return parts;
}

bool OptionText::areSame(const std::string& a, const std::string& b) {
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    return std::ranges::equal(a, b, {}, lower, lower);
}

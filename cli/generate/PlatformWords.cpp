#include "cli/generate/PlatformWords.h"

#include "cli/generate/LayoutWords.h"
#include "files/FileItem.h"
#include "files/PathBytes.h"

#include <QStringList>

#include <algorithm>
#include <span>

namespace {

/// The words with their platforms.
const std::vector<Platforms::Choice>& choices() {
    static const std::vector<Platforms::Choice> words = [] {
        const std::span<const Platforms::Choice> each = Platforms::choices();
        std::vector<Platforms::Choice> all(each.begin(), each.end());
        all.push_back({"all", Platforms::all});
        return all;
    }();
    return words;
}

/// The platform's word for another name of it.
std::string meant(const std::string& word) {
    return OptionText::areSame(word, "ios") ? "universal" : word;
}

} // namespace

std::vector<std::string> PlatformWords::names() {
    std::vector<std::string> all;
    for (const Platforms::Choice& choice : choices())
        all.emplace_back(choice.word);
    return all;
}

std::string PlatformWords::text() {
    std::string all;
    for (const Platforms::Choice& choice : Platforms::choices()) {
        all += (all.empty() ? "" : ", ") + std::string(choice.word);
        if (choice.platforms.size() == 1)
            continue;
        QStringList idioms;
        for (const Platform platform : choice.platforms)
            idioms << Platforms::idiom(platform);
        all += " (" + idioms.join(QStringLiteral(" and ")).toStdString() + ")";
    }
    return all + " or " + choices().back().word;
}

Parsed<std::vector<Platform>> PlatformWords::platforms(const std::vector<std::string>& typed) {
    std::vector<Platform> platforms;
    const std::vector<std::string> standard{choices().back().word};
    for (const std::string& word : typed.empty() ? standard : typed) {
        for (const std::string& name : OptionText::list(word)) {
            const Parsed<std::size_t> found = OptionText::choice("platform", meant(name), names());
            if (const auto* error = std::get_if<UsageError>(&found))
                return LayoutWords::isName(name) ? UsageError{std::string("'")
                                                                  .append(name)
                                                                  .append("' is a layout: write --layout ")
                                                                  .append(name)}
                                                 : *error;
            for (const Platform platform : choices()[std::get<std::size_t>(found)].platforms) {
                if (std::ranges::find(platforms, platform) == platforms.end())
                    platforms.push_back(platform);
            }
        }
    }
    return platforms;
}

std::optional<UsageError> PlatformWords::stray(const std::vector<std::string>& pictures) {
    for (const std::string& picture : pictures) {
        const bool isPlatform =
            std::holds_alternative<std::size_t>(OptionText::choice("platform", meant(picture), names()));
        if (pictures.size() > 1 && isPlatform && !FileItem::exists(PathBytes::decoded(picture)))
            return UsageError{"'" + picture +
                              "' is one argument too many; several platforms are written with commas: "
                              "--platform mac,android"};
    }
    return std::nullopt;
}

// The command line of `generate`.
#include "cli/Command.h"
#include "cli/GenerateCommand.h"
#include "cli/StyleWords.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace {

/// The platform words and the generator's indexes that each stands for, in the order in which they are made.
const std::vector<std::pair<std::string, std::vector<int>>>& platformWords() {
    static const std::vector<std::pair<std::string, std::vector<int>>> words{
        {"iphone", {0}}, {"ipad", {1}},    {"universal", {0, 1}},    {"watch", {3}},
        {"mac", {4}},    {"android", {5}}, {"all", {0, 1, 3, 4, 5}},
    };
    return words;
}

/// The options of `generate` as they are typed.
struct GenerateWords {
    std::string picture;
    std::string out;
    std::vector<std::string> platforms;
    StyleWords style;
    std::string catalogue;
    bool open = false;
    bool quiet = false;
    bool verbose = false;
    bool json = false;
    bool timings = false;
};

CLI::App* addGenerate(CLI::App& app, GenerateWords& words) {
    CLI::App* generate = app.add_subcommand("generate", "Write the icon sets of one picture");
    generate->add_option("PICTURE", words.picture, "PNG, JPEG, TIFF, GIF, BMP, WebP, icns or SVG")
        ->required();
    generate
        ->add_option("--out", words.out, "the folder that the sets go into; it is made where it is missing")
        ->required()
        ->type_name("DIR");
    generate
        ->add_option("--platform", words.platforms,
                     "iphone, ipad, universal (iphone and ipad), watch, mac, android or all (the default); "
                     "may be given "
                     "several times")
        ->type_name("NAME")
        ->take_all()
        ->allow_extra_args(false);
    words.style.addTo(*generate);
    generate
        ->add_option("--catalogue", words.catalogue,
                     "a property list of icon names and sizes instead of the built-in one")
        ->type_name("FILE");
    generate->add_flag("--open", words.open, "open DIR in the file browser afterwards");
    generate->add_flag("--quiet", words.quiet, "print nothing but warnings and errors");
    generate->add_flag("--verbose", words.verbose, "list every file, and show the diagnostic log");
    generate->add_flag("--json", words.json, "print one JSON document instead of lines");
    generate->add_flag("--timings", words.timings,
                       "tell how long each stage of the work took, with --quiet too");
    return generate;
}

Parsed<std::vector<int>> platformIndexes(const std::vector<std::string>& chosen) {
    std::vector<int> indexes;
    const std::vector<std::string> all{"all"};
    for (const std::string& word : chosen.empty() ? all : chosen) {
        const auto found =
            std::ranges::find(platformWords(), word, [](const auto& entry) { return entry.first; });
        if (found == platformWords().end()) {
            std::vector<std::string> names;
            for (const auto& entry : platformWords())
                names.push_back(entry.first);
            return UsageError{"there is no platform '" + word + "'" + OptionText::didYouMean(word, names)};
        }
        for (const int index : found->second) {
            if (std::ranges::find(indexes, index) == indexes.end())
                indexes.push_back(index);
        }
    }
    return indexes;
}

Parsed<GenerateOptions> optionsFrom(const CLI::App& generate, const GenerateWords& words) {
    GenerateOptions options;
    const bool hasCatalogue = generate.count("--catalogue") > 0;
    std::optional<UsageError> error;
    const bool isTaken = take(OptionText::decoded(words.out, "--out"), options.out, error) &&
                         take(platformIndexes(words.platforms), options.platformIndexes, error) &&
                         (!hasCatalogue || take(OptionText::decoded(words.catalogue, "--catalogue"),
                                                options.catalogue, error)) &&
                         take(words.style.style(generate), options.style, error);
    if (!isTaken)
        return *error;
    if (words.picture.empty())
        return UsageError{"PICTURE is empty"};
    if (words.quiet && words.verbose)
        return UsageError{"--quiet and --verbose exclude each other"};
    while (options.out.size() > 1 && options.out.endsWith(u'/'))
        options.out.chop(1);
    options.picture = words.picture;
    options.open = words.open;
    options.quiet = words.quiet;
    options.verbose = words.verbose;
    options.json = words.json;
    options.timings = words.timings;
    return options;
}

} // namespace

Command generateCommand(CLI::App& app) {
    const auto words = std::make_shared<GenerateWords>();
    Command command;
    command.app = addGenerate(app, *words);
    command.prepare = [app = command.app, words]() -> Parsed<std::function<int()>> {
        const Parsed<GenerateOptions> options = optionsFrom(*app, *words);
        if (const auto* error = std::get_if<UsageError>(&options))
            return *error;
        return [options = std::get<GenerateOptions>(options)] { return runGenerate(options); };
    };
    command.remark = [](const std::string& word) -> std::string {
        const bool isPlatform =
            std::ranges::any_of(platformWords(), [&](const auto& entry) { return entry.first == word; });
        return isPlatform ? "; --platform takes one name and may be repeated" : "";
    };
    return command;
}

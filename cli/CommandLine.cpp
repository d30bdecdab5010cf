#include "cli/CommandLine.h"

#include "cli/ColorText.h"
#include "cli/GenerateCommand.h"
#include "cli/Suggestion.h"
#include "cli/Terminal.h"

#include <QStringDecoder>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <new>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace {

constexpr int wrongUsage = 2;

/// What is wrong with the command line.
struct UsageError {
    std::string sentence;
};

/// A value, or the complaint that stands in its place.
template <typename T>
using Parsed = std::variant<T, UsageError>;

template <typename T>
const UsageError* complaint(const Parsed<T>& parsed) {
    return std::get_if<UsageError>(&parsed);
}

/// The platform words and the generator's indexes that each stands for, in the order in which they are made.
const std::vector<std::pair<std::string, std::vector<int>>>& platformWords() {
    static const std::vector<std::pair<std::string, std::vector<int>>> words{
        {"iphone", {0}}, {"ipad", {1}},    {"universal", {0, 1}},    {"watch", {3}},
        {"mac", {4}},    {"android", {5}}, {"all", {0, 1, 3, 4, 5}},
    };
    return words;
}

std::string didYouMean(const std::string& word, const std::vector<std::string>& words) {
    return "; did you mean '" + nearestWord(word, words) + "'?";
}

QString shown(const std::string& text) {
    return QString::fromUtf8(text.c_str());
}

/// The options of `generate` as they are typed.
struct GenerateWords {
    std::string picture;
    std::string out;
    std::vector<std::string> platforms;
    std::string roundCorner;
    std::string border;
    std::string borderColor;
    std::string catalogue;
    bool open = false;
    bool quiet = false;
    bool verbose = false;
    bool json = false;
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
    generate
        ->add_option("--round-corner", words.roundCorner,
                     "corner radius as a fraction of the side, 0 to 1 (0.22 is usual)")
        ->type_name("F");
    generate
        ->add_option("--border", words.border,
                     "border width as a fraction of the width, 0 to 1; its inner half shows")
        ->type_name("F");
    generate
        ->add_option("--border-color", words.borderColor,
                     "#RGB, #RRGGBB, #RRGGBBAA or a name (default #333333)")
        ->type_name("COLOR");
    generate
        ->add_option("--catalogue", words.catalogue,
                     "a property list of icon names and sizes instead of the built-in one")
        ->type_name("FILE");
    generate->add_flag("--open", words.open, "open DIR in the file browser afterwards");
    generate->add_flag("--quiet", words.quiet, "print nothing but warnings and errors");
    generate->add_flag("--verbose", words.verbose, "list every file, and show the diagnostic log");
    generate->add_flag("--json", words.json, "print one JSON document instead of lines");
    return generate;
}

Parsed<QString> decoded(const std::string& text, const std::string& what) {
    if (text.empty())
        return UsageError{what + " is empty"};
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString result = decoder.decode(QByteArray::fromStdString(text));
    if (decoder.hasError())
        return UsageError{what + " is not valid UTF-8"};
    return result;
}

Parsed<float> fraction(const std::string& option, const std::string& text) {
    bool isNumber = false;
    const float value = QString::fromStdString(text).toFloat(&isNumber);
    if (!isNumber || !(value >= 0) || value > 1)
        return UsageError{option + " takes a fraction from 0 to 1, not '" + text + "'"};
    return value;
}

Parsed<Color> color(const std::string& text) {
    if (const std::optional<Color> found = colorFromText(text))
        return *found;
    if (text.starts_with('#'))
        return UsageError{"'" + text + "' is not a colour of the form #RGB, #RRGGBB or #RRGGBBAA"};
    return UsageError{"there is no colour '" + text + "'" + didYouMean(text, colorNames())};
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
            return UsageError{"there is no platform '" + word + "'" + didYouMean(word, names)};
        }
        for (const int index : found->second) {
            if (std::ranges::find(indexes, index) == indexes.end())
                indexes.push_back(index);
        }
    }
    return indexes;
}

/// Takes one parsed value; false where it is a complaint, which goes to `error`.
template <typename T>
bool take(const Parsed<T>& parsed, T& value, std::optional<UsageError>& error) {
    if (const UsageError* found = complaint(parsed)) {
        error = *found;
        return false;
    }
    value = std::get<T>(parsed);
    return true;
}

Parsed<GenerateOptions> optionsFrom(const CLI::App& generate, const GenerateWords& words) {
    GenerateOptions options;
    IconStyle& style = options.style;
    const bool hasCatalogue = generate.count("--catalogue") > 0;
    const bool hasColor = generate.count("--border-color") > 0;
    style.roundCorner = generate.count("--round-corner") > 0;
    style.border = generate.count("--border") > 0;
    std::optional<UsageError> error;
    const bool isTaken =
        take(decoded(words.out, "--out"), options.out, error) &&
        take(platformIndexes(words.platforms), options.platformIndexes, error) &&
        (!hasCatalogue || take(decoded(words.catalogue, "--catalogue"), options.catalogue, error)) &&
        (!style.roundCorner ||
         take(fraction("--round-corner", words.roundCorner), style.cornerRadiusPercent, error)) &&
        (!style.border || take(fraction("--border", words.border), style.borderWidth, error)) &&
        (!hasColor || take(color(words.borderColor), style.borderColor, error));
    if (!isTaken)
        return *error;
    if (words.picture.empty())
        return UsageError{"PICTURE is empty"};
    if (hasColor && !style.border)
        return UsageError{"--border-color needs --border"};
    if (words.quiet && words.verbose)
        return UsageError{"--quiet and --verbose exclude each other"};
    while (options.out.size() > 1 && options.out.endsWith(u'/'))
        options.out.chop(1);
    options.picture = words.picture;
    options.open = words.open;
    options.quiet = words.quiet;
    options.verbose = words.verbose;
    options.json = words.json;
    return options;
}

/// The complaint about the first word of the command line that nothing takes, if there is one.
std::optional<UsageError> unknownWord(const CLI::App& app) {
    const CLI::App* command = app.get_subcommands().empty() ? nullptr : app.get_subcommands().front();
    for (const std::string& word : app.remaining(true)) {
        if (word == "--")
            continue;
        const bool isOption = word.size() > 1 && word[0] == '-';
        std::vector<std::string> names;
        if (isOption && command == nullptr &&
            std::ranges::any_of(app.get_subcommands({}), [&](const CLI::App* other) {
                return other->get_option_no_throw(word) != nullptr;
            }))
            return UsageError{"the option '" + word + "' goes behind a command"};
        if (isOption) {
            for (const CLI::Option* option : (command != nullptr ? command : &app)->get_options()) {
                for (const std::string& name : option->get_lnames())
                    names.push_back("--" + name);
            }
            return UsageError{"there is no option '" + word + "'" + didYouMean(word, names)};
        }
        if (command == nullptr) {
            for (const CLI::App* candidate : app.get_subcommands({}))
                names.push_back(candidate->get_name());
            return UsageError{"there is no command '" + word + "'" + didYouMean(word, names)};
        }
        const bool isPlatform =
            std::ranges::any_of(platformWords(), [&](const auto& entry) { return entry.first == word; });
        return UsageError{"'" + word + "' is one argument too many" +
                          (isPlatform ? "; --platform takes one name and may be repeated" : "")};
    }
    return std::nullopt;
}

/// The parser's complaint in words of our own, where it has none for people.
UsageError reworded(const CLI::ParseError& error) {
    const std::string text = error.what();
    const std::string option = text.substr(0, text.find(':'));
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr)
        return {text};
    return {option +
            (text.find("At Most 1") != std::string::npos ? " is given more than once" : " needs a value")};
}

int complain(const CLI::App& app, const UsageError& error) {
    const bool hasCommand = !app.get_subcommands().empty();
    const std::string help = "tobrimax-cli " +
                             (hasCommand ? app.get_subcommands().front()->get_name() + " " : std::string()) +
                             "--help";
    Terminal::error(shown(error.sentence + " (see " + help + ")"));
    return wrongUsage;
}

} // namespace

int runCommandLine(int argc, char** argv) {
    Terminal::showDiagnosticLog(false);
    CLI::App app(
        "Turns one picture into the icon sets that iPhone, iPad, Apple Watch, Mac and Android apps need.",
        "tobrimax-cli");
    app.set_version_flag("--version", "tobrimax-cli " TOBRIMAX_VERSION);
    app.set_help_flag("-h,--help", "Show this and exit");
    app.require_subcommand(0, 1);
    app.allow_extras();
    GenerateWords words;
    CLI::App* generate = addGenerate(app, words);
    generate->allow_extras();
    // The parser reports by exceptions; they end here.
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        std::ostringstream text;
        const int status = app.exit(request, text, text);
        return Terminal::print(shown(text.str()).trimmed()) ? status : 1;
    } catch (const CLI::ParseError& error) {
        return complain(app, unknownWord(app).value_or(reworded(error)));
    }
    if (const std::optional<UsageError> unknown = unknownWord(app))
        return complain(app, *unknown);
    if (app.get_subcommands().empty())
        return complain(app, {"a command is missing: generate"});
    const Parsed<GenerateOptions> options = optionsFrom(*generate, words);
    if (const UsageError* error = complaint(options))
        return complain(app, *error);
    try {
        return runGenerate(std::get<GenerateOptions>(options));
    } catch (const std::bad_alloc&) {
        Terminal::error(QStringLiteral("not enough memory"));
        return 1;
    }
}

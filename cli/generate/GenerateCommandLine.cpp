// Parses the command line of `generate`.
#include "cli/common/Command.h"
#include "cli/common/FitWords.h"
#include "cli/common/InputFile.h"
#include "cli/common/ProofOption.h"
#include "cli/common/SmallWords.h"
#include "cli/common/StyleWords.h"
#include "cli/common/SvgLimitWords.h"
#include "cli/generate/GenerateCall.h"
#include "cli/generate/GenerateReport.h"
#include "cli/generate/GenerateWatch.h"
#include "cli/generate/LayoutWords.h"
#include "cli/generate/PlatformWords.h"
#include "cli/generate/ProjectRuns.h"
#include "imaging/io/PictureFormat.h"

#include <unistd.h>

#include <algorithm>
#include <memory>

namespace {

/// The words of --compress, in the order of PngEffort.
const std::vector<std::string>& effortWords() {
    static const std::vector<std::string> words{"fast", "best"};
    return words;
}

/// The options of `generate` as typed.
struct GenerateWords {
    std::vector<std::string> pictures;
    std::string out;
    std::vector<std::string> platforms;
    StyleWords style;
    FitWords fit;
    SmallWords small;
    LayoutWords layout;
    std::string compress;
    std::string catalogue;
    std::string jobs;
    bool dryRun = false;
    bool check = false;
    bool watch = false;
    std::string proof;
    SvgLimitWords svgLimit;
    bool open = false;
    bool quiet = false;
    bool verbose = false;
    bool json = false;
    bool timings = false;
};

/// Adds the options of `generate` to `command`.
void addOptions(CLI::App& command, GenerateWords& words) {
    command
        .add_option("PICTURE", words.pictures,
                    "a file: " + PictureFormats::names().toStdString() +
                        "; each of several gets a folder of its name in DIR; - is standard input")
        ->required();
    command
        .add_option("-o,--out", words.out,
                    "the folder for the icons; it is made if it is missing; - writes a tar stream to "
                    "standard output")
        ->required()
        ->type_name("DIR");
    command
        .add_option("-p,--platform", words.platforms,
                    "whose icons to make: " + PlatformWords::text() + "; several with commas (default: all)")
        ->type_name("NAME")
        ->take_all()
        ->allow_extra_args(false);
    words.style.addTo(command);
    words.fit.addTo(command);
    words.small.addTo(command);
    words.layout.addTo(command);
    command
        .add_option("--compress", words.compress,
                    "how PNG files are compressed: fast (the default) or best (fewer bytes, in many times "
                    "the time; the icons of the platforms' folders may get fewer channels and bits)")
        ->type_name("NAME");
    command
        .add_option("--catalogue", words.catalogue,
                    "a property list of icon names and sizes (default: the built-in one)")
        ->type_name("FILE");
    command
        .add_option("--jobs", words.jobs,
                    "how many of several pictures are worked on at once (default: one for each core)")
        ->type_name("N");
    command.add_flag("--dry-run", words.dryRun, "list what would be written, and write nothing");
    command.add_flag("--check", words.check,
                     "compare DIR with what would be written; exit status 1 where a file is missing, "
                     "differs or has another size");
    command.add_flag("--watch", words.watch,
                     "make the icons again whenever a file changes that they are made from");
    ProofOption::addTo(command, words.proof);
    words.svgLimit.addTo(command);
    command.add_flag("--open", words.open, "open DIR in the file browser at the end");
    command.add_flag("-q,--quiet", words.quiet, "print nothing but warnings and errors");
    command.add_flag("-v,--verbose", words.verbose,
                     "list every file, and show the diagnostic log (default: one line for each platform)");
    command.add_flag("--json", words.json, "print one JSON document instead of lines");
    command.add_flag("--timings", words.timings, "print how long each stage took, even with --quiet");
}

Parsed<int> jobsOf(const std::string& text) {
    constexpr int most = 1000;
    bool isNumber = false;
    const int jobs = QString::fromStdString(text).toInt(&isNumber);
    if (!isNumber || jobs < 1 || jobs > most)
        return UsageError{"--jobs takes a whole number from 1 to 1000, not '" + text + "'"};
    return jobs;
}

/// As DIR: standard output.
constexpr char streamWord[] = "-";

/// What is wrong with options that are right one by one.
std::optional<UsageError> exclusion(const CLI::App& generate, const GenerateWords& words,
                                    const GenerateOptions& options) {
    constexpr std::pair<const char*, const char*> pairs[] = {
        {"--quiet", "--verbose"}, {"--dry-run", "--check"}, {"--dry-run", "--open"},  {"--check", "--open"},
        {"--dry-run", "--proof"}, {"--check", "--proof"},   {"--watch", "--dry-run"}, {"--watch", "--check"},
        {"--watch", "--json"},    {"--watch", "--open"}};
    for (const auto& [one, other] : pairs) {
        if (generate.count(one) > 0 && generate.count(other) > 0)
            return UsageError{std::string(one) + " and " + other + " exclude each other"};
    }
    const LayoutWords& others = words.layout;
    std::vector<std::string> pictures{others.dark, others.tinted, others.foreground, others.monochrome};
    std::ranges::copy(words.pictures, std::back_inserter(pictures));
    for (const SmallPicture& small : options.small)
        pictures.push_back(small.path);
    if (words.pictures.size() > 1 && std::ranges::any_of(pictures, InputFile::isStandardInput))
        return UsageError{"standard input (-) gives one picture, and not one of several"};
    if (words.watch && std::ranges::any_of(pictures, InputFile::isStandardInput))
        return UsageError{"standard input (-) can't be watched"};
    if (words.out != streamWord)
        return std::nullopt;
    for (const char* option :
         {"--json", "--dry-run", "--check", "--watch", "--open", "--proof", "--timings"}) {
        if (generate.count(option) > 0)
            return UsageError{"--out - and " + std::string(option) + " exclude each other"};
    }
    if (words.pictures.size() > 1)
        return UsageError{"--out - takes one picture"};
    if (isatty(STDOUT_FILENO) != 0)
        return UsageError{"--out - writes a tar stream, which is not for a terminal"};
    return std::nullopt;
}

Parsed<GenerateOptions> optionsFrom(const CLI::App& generate, const GenerateWords& words) {
    GenerateOptions options;
    const bool hasCatalogue = generate.count("--catalogue") > 0;
    std::optional<UsageError> error;
    const bool isTaken =
        take(OptionText::path(words.out, "--out"), options.out, error) &&
        take(PlatformWords::platforms(words.platforms), options.platforms, error) &&
        (generate.count("--compress") == 0 ||
         take(OptionText::valueOf<PngEffort>("compress", words.compress, effortWords()), options.effort,
              error)) &&
        (!hasCatalogue || take(OptionText::path(words.catalogue, "--catalogue"), options.catalogue, error)) &&
        (generate.count("--jobs") == 0 || take(jobsOf(words.jobs), options.jobs, error)) &&
        (generate.count("--proof") == 0 ||
         take(ProofOption::path(words.proof, words.pictures.front()), options.proof, error)) &&
        take(words.style.style(generate), options.style, error) &&
        take(words.fit.pictureFit(generate), options.fit, error) &&
        take(words.small.pictures(), options.small, error) &&
        take(words.svgLimit.seconds(generate, options.svgSeconds), options.svgSeconds, error);
    if (!isTaken)
        return *error;
    if (const std::optional<UsageError> wrong = words.layout.addTo(options, generate))
        return *wrong;
    if (words.pictures.front().empty())
        return UsageError{"PICTURE is empty"};
    if (const std::optional<UsageError> stray = PlatformWords::stray(words.pictures))
        return *stray;
    if (const std::optional<UsageError> wrong = exclusion(generate, words, options))
        return *wrong;
    if (words.dryRun)
        options.purpose = GeneratePurpose::List;
    if (words.check)
        options.purpose = GeneratePurpose::Check;
    if (words.out == streamWord) {
        options.purpose = GeneratePurpose::Stream;
        options.out.clear();
    }
    while (options.out.size() > 1 && options.out.endsWith(u'/'))
        options.out.chop(1);
    options.picture = words.pictures.front();
    options.watch = words.watch;
    options.open = words.open;
    options.quiet = words.quiet;
    options.verbose = words.verbose;
    options.json = words.json;
    options.timings = words.timings;
    return options;
}

/// The options that `command` was given.
OptionValues valuesOf(const CLI::App& command) {
    OptionValues values;
    for (const CLI::Option* option : command.get_options()) {
        if (option->count() > 0)
            values[option->get_name()] = option->results();
    }
    return values;
}

/// The keys of a project's file: the options of `command`.
std::vector<ProjectFile::Key> keysOf(const CLI::App& command) {
    using Kind = ProjectFile::Key::Kind;
    const std::vector<std::string> forAll{"jobs",  "dry-run", "check", "watch",
                                          "quiet", "verbose", "json",  "timings"};
    std::vector<ProjectFile::Key> keys{{QStringLiteral("picture"), Kind::Texts, false}};
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_positional() || option == command.get_help_ptr())
            continue;
        const std::string name = option->get_lnames().front();
        const std::string type = option->get_type_name();
        Kind kind = Kind::Text;
        if (option->get_items_expected_max() == 0)
            kind = Kind::Flag;
        else if (type == "F" || type == "N")
            kind = Kind::Number;
        else if (option->get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll)
            kind = Kind::Texts;
        keys.push_back({QString::fromStdString(name), kind, std::ranges::find(forAll, name) != forAll.end()});
    }
    return keys;
}

/// The files that are read for the runs.
std::set<QString> inputsOf(const std::vector<GenerateRun>& runs) {
    std::set<QString> all;
    for (const GenerateRun& run : runs)
        all.merge(GenerateWatch::inputs(run.options));
    return all;
}

/// Makes what the project's file says. Returns the exit status. The files that are read are added to
/// `inputs`.
int makeProject(const std::vector<ProjectFile::Key>& keys, const OptionValues& typed,
                std::set<QString>& inputs) {
    constexpr int wrongUsage = 2;
    Result<std::vector<GenerateRun>> runs = ProjectRuns::read(keys, typed);
    if (runs) {
        inputs = inputsOf(*runs);
        inputs.insert(QLatin1String(ProjectFile::name));
        return GenerateCall::of(std::move(*runs)).make();
    }
    GenerateOptions options;
    options.json = typed.contains("--json");
    GenerateReport report(options);
    report.fail({}, runs.error());
    const int exitStatus = report.finish();
    const bool isWrong =
        runs.error().code == ErrorCode::Malformed || runs.error().code == ErrorCode::TooLarge;
    return isWrong ? wrongUsage : exitStatus;
}

/// Makes what the project's file says, once or as long as it is watched. Returns the exit status.
int makeOrWatchProject(const std::vector<ProjectFile::Key>& keys, const OptionValues& typed) {
    std::set<QString> inputs{QLatin1String(ProjectFile::name)};
    const Result<std::vector<GenerateRun>> runs = ProjectRuns::read(keys, typed);
    if (!runs || !runs->front().options.watch)
        return makeProject(keys, typed, inputs);
    // A file that can't be read later leaves the inputs as they were.
    const auto make = [&] {
        makeProject(keys, typed, inputs);
        return inputs;
    };
    return GenerateWatch::run(inputs, make, runs->front().options.quiet);
}

} // namespace

Parsed<GenerateOptions> GenerateRuns::parsed(const OptionValues& values) {
    CLI::App command;
    GenerateWords words;
    addOptions(command, words);
    // The parser throws exceptions; they are caught here.
    try {
        for (const auto& [name, texts] : values) {
            for (const std::string& text : texts)
                command.get_option(name)->add_result(text);
        }
        command.parse(std::vector<std::string>{});
    } catch (const CLI::ParseError& error) {
        return UsageError{error.what()};
    }
    return optionsFrom(command, words);
}

Command generateCommand(CLI::App& app) {
    const auto words = std::make_shared<GenerateWords>();
    Command command;
    command.app = app.add_subcommand("generate", "Write the icon sets of pictures");
    command.app->footer("tobrimax-cli generate logo.svg --out icons --platform mac,android");
    addOptions(*command.app, *words);
    // The project's file may say them.
    for (const char* name : {"PICTURE", "--out"})
        command.app->get_option(name)->required(false);
    // The parser writes into the words.
    command.prepare = [app = command.app, words]() -> Parsed<std::function<int()>> {
        const OptionValues values = valuesOf(*app);
        if (!values.contains("PICTURE") && ProjectRuns::isFileThere())
            return [keys = keysOf(*app), values] { return makeOrWatchProject(keys, values); };
        if (!values.contains("PICTURE"))
            return UsageError{"PICTURE is missing, and there is no " + std::string(ProjectFile::name) +
                              " here"};
        Parsed<std::vector<GenerateRun>> runs = GenerateRuns::of(values);
        if (const auto* error = std::get_if<UsageError>(&runs))
            return *error;
        return [call = GenerateCall::of(std::move(std::get<std::vector<GenerateRun>>(runs)))] {
            if (!call.runs.front().options.watch)
                return call.make();
            return GenerateWatch::run(
                inputsOf(call.runs),
                [&] {
                    call.make();
                    return inputsOf(call.runs);
                },
                call.runs.front().options.quiet);
        };
    };
    command.choices = {{"--platform", PlatformWords::names},
                       {"--layout", LayoutWords::names},
                       {"--fit", FitWords::names},
                       {"--compress", effortWords}};
    return command;
}

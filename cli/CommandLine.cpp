#include "cli/CommandLine.h"

#include "cli/HelpText.h"
#include "cli/UnknownWord.h"
#include "cli/common/Command.h"
#include "cli/generate/GenerateJobs.h"
#include "cli/text/ErrorDocument.h"
#include "cli/text/Terminal.h"
#include "project/JobProcesses.h"

#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

namespace {

constexpr int wrongUsage = 2;

QString shown(const std::string& text) {
    return QString::fromUtf8(text.c_str());
}

/// The parser's complaint. It is reworded if an option has too many values or none; such a complaint begins
/// with the option's name.
UsageError reworded(const CLI::App& app, const CLI::ParseError& error) {
    const std::string text = error.what();
    if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::ArgumentMismatch))
        return {text};
    const std::string name = text.substr(0, text.find(':'));
    for (const CLI::App* command : namedCommands(app)) {
        if (const CLI::Option* option = command->get_option_no_throw(name)) {
            const auto most = static_cast<std::size_t>(option->get_items_expected_max());
            if (option->count() > most)
                return {name + " is given more than once"};
            const bool isColor = option->get_type_name() == "COLOR";
            return {name + " needs a value" +
                    (isColor ? "; a shell takes # for a comment unless it is quoted: '#ff0000'" : "")};
        }
    }
    return {text};
}

/// The words behind the program's name. "help" in front of a command is "--help" behind it.
std::vector<std::string> wordsOf(int argc, const char* const* argv, const CLI::App& app) {
    std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
    if (words.empty() || words.front() != "help")
        return words;
    words.erase(words.begin());
    // Where a word is no command, the complaint about it is worth more than the help.
    const CLI::App* at = &app;
    for (const std::string& word : words) {
        const std::vector<const CLI::App*> below = at->get_subcommands({});
        const auto found = std::ranges::find(below, word, &CLI::App::get_name);
        if (found == below.end())
            return words;
        at = *found;
    }
    words.emplace_back("--help");
    return words;
}

/// Whether the command line asks for JSON, as far as that can be told of a wrong one.
bool wantsJson(int argc, const char* const* argv) {
    const std::vector<std::string> words(argv, argv + argc);
    const auto end = std::ranges::find(words, "--");
    return std::find(words.begin(), end, "--json") != end;
}

/// What is printed for --help and --version.
std::string textFor(const CLI::App& app, const CLI::Success& request) {
    constexpr int narrowest = 20;
    constexpr int widest = 80;
    const std::vector<const CLI::App*> named = namedCommands(app);
    if (dynamic_cast<const CLI::CallForHelp*>(&request) != nullptr)
        return helpText(named.empty() ? app : *named.back(),
                        std::clamp(Terminal::columns(STDOUT_FILENO), narrowest, widest));
    return request.what();
}

ParsedCommandLine complaint(const CLI::App& app, const UsageError& error) {
    std::string help = "tobrimax-cli ";
    for (const CLI::App* command : namedCommands(app))
        help += command->get_name() + " ";
    return {nullptr, {}, error.sentence + " (see " + help + "--help)"};
}

} // namespace

std::vector<Command> addCommands(CLI::App& app) {
    app.name("tobrimax-cli");
    app.description(
        "Turn one picture into the icon sets that iPhone, iPad, Apple Watch, Mac and Android apps need");
    app.footer("tobrimax-cli generate logo.svg --out icons");
    app.set_version_flag("-V,--version", "tobrimax-cli " TOBRIMAX_VERSION, "print the version and exit");
    app.set_help_flag("-h,--help", "print this and exit");
    app.require_subcommand(0, 1);
    app.allow_extras();
    std::vector<Command> commands{generateCommand(app), layoutsCommand(app)};
    std::ranges::move(icnsCommands(app), std::back_inserter(commands));
    std::ranges::move(customIconCommands(app), std::back_inserter(commands));
    commands.push_back(exportCommand(app));
    for (const Command& command : commands) {
        command.app->allow_extras();
        command.app->get_parent()->allow_extras();
    }
    return commands;
}

ParsedCommandLine parseCommandLine(int argc, const char* const* argv) {
    CLI::App app;
    const std::vector<Command> commands = addCommands(app);
    const std::vector<std::string> words = wordsOf(argc, argv, app);
    // The parser throws exceptions; they are caught here.
    try {
        app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::Success& request) {
        return {nullptr, textFor(app, request), {}};
    } catch (const CLI::ParseError& error) {
        return complaint(app, unknownWord(app, words).value_or(reworded(app, error)));
    }
    if (const std::optional<UsageError> unknown = unknownWord(app, words))
        return complaint(app, *unknown);
    const std::vector<const CLI::App*> named = namedCommands(app);
    const CLI::App& last = named.empty() ? app : *named.back();
    const auto command = std::ranges::find(commands, &last, &Command::app);
    if (command == commands.end())
        return complaint(app, {"a command is missing: " + namesOf(last.get_subcommands({}))});
    const Parsed<std::function<int()>> work = command->prepare();
    if (const auto* error = std::get_if<UsageError>(&work))
        return complaint(app, *error);
    return {std::get<std::function<int()>>(work), {}, {}};
}

int runCommandLine(int argc, const char* const* argv) {
    Terminal::showDiagnosticLog(false);
    if (JobProcesses::isStartedHere(argc, argv)) {
        GenerateJobs::serve();
        return 0;
    }
    const ParsedCommandLine parsed = parseCommandLine(argc, argv);
    if (parsed.work)
        return parsed.work();
    if (!parsed.complaint.empty()) {
        const QString sentence = shown(parsed.complaint);
        Terminal::error(sentence);
        if (wantsJson(argc, argv) &&
            !ErrorDocument::print({{}, QLatin1String(ErrorDocument::wrongUsage), sentence}))
            return Terminal::outputFailure();
        return wrongUsage;
    }
    return Terminal::print(shown(parsed.text).trimmed()) ? 0 : 1;
}

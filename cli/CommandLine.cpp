#include "cli/CommandLine.h"

#include "cli/common/Command.h"
#include "cli/text/ErrorDocument.h"
#include "cli/text/Terminal.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace {

constexpr int wrongUsage = 2;

QString shown(const std::string& text) {
    return QString::fromUtf8(text.c_str());
}

/// The commands that the command line named, outermost first: "icns", "list".
std::vector<const CLI::App*> namedCommands(const CLI::App& app) {
    std::vector<const CLI::App*> named;
    for (const CLI::App* at = &app; !at->get_subcommands().empty();) {
        at = at->get_subcommands().front();
        named.push_back(at);
    }
    return named;
}

bool isOption(const std::string& word) {
    return word.size() > 1 && word[0] == '-';
}

/// Whether any command in `app` has that option.
bool hasOption(const CLI::App& app, const std::string& option) {
    return std::ranges::any_of(app.get_subcommands({}), [&](const CLI::App* command) {
        return command->get_option_no_throw(option) != nullptr || hasOption(*command, option);
    });
}

/// The complaint about a word of the command line that is neither an option, a command nor an argument.
UsageError unknownWord(const CLI::App& app, const std::vector<Command>& commands, const std::string& word) {
    const std::vector<const CLI::App*> named = namedCommands(app);
    const CLI::App& last = named.empty() ? app : *named.back();
    std::vector<std::string> names;
    if (isOption(word)) {
        if (!last.get_subcommands({}).empty() && hasOption(last, word))
            return {"the option '" + word + "' goes behind a command"};
        if (last.get_option_no_throw(word) != nullptr)
            return {"the option '" + word + "' goes behind the command '" + last.get_name() + "'"};
        for (const CLI::Option* option : last.get_options()) {
            for (const std::string& name : option->get_lnames())
                names.push_back("--" + name);
        }
        return {"there is no option '" + word + "'" + OptionText::didYouMean(word, names)};
    }
    for (const CLI::App* candidate : last.get_subcommands({}))
        names.push_back(candidate->get_name());
    if (!names.empty())
        return {"there is no command '" + (named.empty() ? "" : last.get_name() + " ") + word + "'" +
                OptionText::didYouMean(word, names)};
    const auto command = std::ranges::find(commands, &last, &Command::app);
    const bool hasRemark = command != commands.end() && command->remark;
    return {"'" + word + "' is one argument too many" + (hasRemark ? command->remark(word) : std::string())};
}

/// The complaint about the first such word, if there is one.
std::optional<UsageError> unknownWord(const CLI::App& app, const std::vector<Command>& commands) {
    for (const std::string& word : app.remaining(true)) {
        if (word != "--")
            return unknownWord(app, commands, word);
    }
    return std::nullopt;
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
            return {name + (option->count() > most ? " is given more than once" : " needs a value")};
        }
    }
    return {text};
}

/// "generate, icns or export".
std::string listed(const std::vector<const CLI::App*>& commands) {
    std::string text;
    for (std::size_t i = 0; i < commands.size(); ++i) {
        if (i > 0)
            text += i + 1 == commands.size() ? " or " : ", ";
        text += commands[i]->get_name();
    }
    return text;
}

/// Whether the command line asks for JSON, as far as that can be told of a wrong one.
bool wantsJson(int argc, const char* const* argv) {
    const std::vector<std::string> words(argv, argv + argc);
    const auto end = std::ranges::find(words, "--");
    return std::find(words.begin(), end, "--json") != end;
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
        "Turns one picture into the icon sets that iPhone, iPad, Apple Watch, Mac and Android apps need.");
    app.set_version_flag("--version", "tobrimax-cli " TOBRIMAX_VERSION);
    app.set_help_flag("-h,--help", "Show this and exit");
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
    // The parser throws exceptions; they are caught here.
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& request) {
        std::ostringstream text;
        app.exit(request, text, text);
        return {nullptr, text.str(), {}};
    } catch (const CLI::ParseError& error) {
        return complaint(app, unknownWord(app, commands).value_or(reworded(app, error)));
    }
    if (const std::optional<UsageError> unknown = unknownWord(app, commands))
        return complaint(app, *unknown);
    const std::vector<const CLI::App*> named = namedCommands(app);
    const CLI::App& last = named.empty() ? app : *named.back();
    const auto command = std::ranges::find(commands, &last, &Command::app);
    if (command == commands.end())
        return complaint(app, {"a command is missing: " + listed(last.get_subcommands({}))});
    const Parsed<std::function<int()>> work = command->prepare();
    if (const auto* error = std::get_if<UsageError>(&work))
        return complaint(app, *error);
    return {std::get<std::function<int()>>(work), {}, {}};
}

int runCommandLine(int argc, const char* const* argv) {
    Terminal::showDiagnosticLog(false);
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

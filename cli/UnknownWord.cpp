#include "cli/UnknownWord.h"

#include "base/Suggestion.h"

#include <algorithm>

namespace {

bool isOption(const std::string& word) {
    return word.size() > 1 && word[0] == '-';
}

/// The option's name in "--name=value".
std::string nameIn(const std::string& word) {
    return word.substr(0, word.find('='));
}

/// Whether `command` knows the option, which may be a short one with its value: "-pmac".
bool knows(const CLI::App& command, const std::string& option) {
    constexpr std::size_t shortName = 2;
    return command.get_option_no_throw(nameIn(option)) != nullptr ||
           (!option.starts_with("--") && command.get_option_no_throw(option.substr(0, shortName)) != nullptr);
}

/// Whether any command in `app` has that option.
bool hasOption(const CLI::App& app, const std::string& option) {
    return std::ranges::any_of(app.get_subcommands({}), [&](const CLI::App* command) {
        return knows(*command, option) || hasOption(*command, option);
    });
}

/// A word as a shell takes it.
std::string quoted(const std::string& word) {
    const auto isPlain = [](unsigned char c) {
        return std::isalnum(c) != 0 || c > 127 ||
               std::string("-_./:=,+@%").find(static_cast<char>(c)) != std::string::npos;
    };
    if (!word.empty() && std::ranges::all_of(word, isPlain))
        return word;
    std::string text = "\"";
    for (const char c : word) {
        if (std::string("\"\\$`").find(c) != std::string::npos)
            text += '\\';
        text += c;
    }
    return text + "\"";
}

bool isLikelyPath(const std::string& word) {
    return !isOption(word) && word.find_first_of("./") != std::string::npos;
}

/// The whole line with the command `generate`, for somebody who left it out; empty where the words don't look
/// like a line of that command.
std::string lineWithGenerate(const CLI::App& app, const std::vector<std::string>& words) {
    const CLI::App* generate = app.get_subcommand("generate");
    const bool areItsOptions = std::ranges::all_of(
        words, [&](const std::string& word) { return !isOption(word) || knows(*generate, word); });
    if (!areItsOptions || std::ranges::none_of(words, isLikelyPath))
        return {};
    std::string line = app.get_name() + " generate";
    for (const std::string& word : words)
        line += " " + quoted(word);
    return line;
}

/// A command inside of another that has that name: "icns list"; empty if there is none.
std::string commandInside(const CLI::App& app, const std::string& word) {
    for (const CLI::App* group : app.get_subcommands({})) {
        for (const CLI::App* command : group->get_subcommands({})) {
            if (command->get_name() == word)
                return group->get_name() + " " + word;
        }
    }
    return {};
}

std::vector<std::string> longOptions(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    }
    return names;
}

UsageError unknownOption(const CLI::App& app, const CLI::App& last, const std::string& word,
                         const std::vector<std::string>& words) {
    if (&last == &app) {
        if (words == std::vector<std::string>{"-v"})
            return {"write the option '-v' after a command; did you mean '--version'?"};
        if (const std::string line = lineWithGenerate(app, words); !line.empty())
            return {"a command is missing; did you mean '" + line + "'?"};
    }
    if (knows(last, word))
        return {"write the option '" + word + "' after the command '" + last.get_name() + "'"};
    if (!last.get_subcommands({}).empty() && hasOption(last, word))
        return {"write the option '" + word + "' after a command: " + namesOf(last.get_subcommands({}))};
    return {"there is no option '" + nameIn(word) + "'" + suggestion(nameIn(word), longOptions(last))};
}

UsageError unknownCommand(const CLI::App& app, const CLI::App& last, const std::string& word,
                          const std::vector<std::string>& words) {
    std::vector<std::string> names;
    for (const CLI::App* candidate : last.get_subcommands({}))
        names.push_back(candidate->get_name());
    const std::string start =
        "there is no command '" + (&last == &app ? "" : last.get_name() + " ") + word + "'";
    if (&last != &app)
        return {start + suggestion(word, names)};
    for (const std::string& meant :
         {commandInside(app, word), nearestWord(word, names), nearestWord(word, longOptions(app)),
          isLikelyPath(word) ? lineWithGenerate(app, words) : std::string()}) {
        if (!meant.empty())
            return {std::string(start).append("; did you mean '").append(meant).append("'?")};
    }
    return {start + suggestion(word, names)};
}

} // namespace

std::vector<const CLI::App*> namedCommands(const CLI::App& app) {
    std::vector<const CLI::App*> named;
    for (const CLI::App* at = &app; !at->get_subcommands().empty();) {
        at = at->get_subcommands().front();
        named.push_back(at);
    }
    return named;
}

std::string namesOf(const std::vector<const CLI::App*>& commands) {
    std::string text;
    for (std::size_t i = 0; i < commands.size(); ++i) {
        if (i > 0)
            text += i + 1 == commands.size() ? " or " : ", ";
        text += commands[i]->get_name();
    }
    return text;
}

std::optional<UsageError> unknownWord(const CLI::App& app, const std::vector<std::string>& words) {
    const std::vector<std::string> remaining = app.remaining(true);
    const auto found = std::ranges::find_if(remaining, [](const std::string& word) { return word != "--"; });
    if (found == remaining.end())
        return std::nullopt;
    const std::vector<const CLI::App*> named = namedCommands(app);
    const CLI::App& last = named.empty() ? app : *named.back();
    if (isOption(*found))
        return unknownOption(app, last, *found, words);
    if (!last.get_subcommands({}).empty())
        return unknownCommand(app, last, *found, words);
    // "icns make logo.svg logo.icns"
    const CLI::Option* out = last.get_option_no_throw("--out");
    const bool lacksOut = out != nullptr && out->count() == 0;
    return UsageError{"'" + *found + "' is one argument too many" +
                      (lacksOut ? "; did you mean '--out " + quoted(*found) + "'?" : "")};
}

// Prints what the parser of tobrimax-cli takes as one JSON document: an array of commands in the order of
// their help, the program itself first, as the command "". Each has its "command", "subcommands", "operands",
// "operandChoices" (the words that these know), "areOperandsRequired", "isLastOperandRepeatable" and
// "options".
#include "cli/common/Command.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace {

using namespace Qt::StringLiterals;

QString shown(const std::string& text) {
    return QString::fromStdString(text);
}

QJsonArray array(const std::vector<std::string>& words) {
    QJsonArray result;
    for (const std::string& word : words)
        result.append(shown(word));
    return result;
}

QJsonObject object(const CLI::Option& option, const std::vector<std::string>& choices) {
    QJsonArray names;
    for (const std::string& name : option.get_snames())
        names.append(u'-' + shown(name));
    for (const std::string& name : option.get_lnames())
        names.append(u"--"_s + shown(name));
    const bool hasValue = option.get_items_expected_max() > 0;
    const bool isRepeatable = option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    return {{u"names"_s, names},
            {u"value"_s, hasValue ? shown(option.get_type_name()) : QString()},
            {u"choices"_s, array(choices)},
            {u"isRequired"_s, option.get_required()},
            {u"isRepeatable"_s, hasValue && isRepeatable}};
}

/// Appends `command`, whose words are `words`, and all below it.
void append(QJsonArray& table, const CLI::App& command, const std::string& words,
            const std::vector<Command>& commands) {
    const auto found = std::ranges::find(commands, &command, &Command::app);
    QJsonArray operands;
    QJsonArray operandChoices;
    bool areOperandsRequired = true;
    bool isLastOperandRepeatable = false;
    QJsonArray options;
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_positional()) {
            operands.append(shown(option->get_name(true)));
            areOperandsRequired = areOperandsRequired && option->get_required();
            isLastOperandRepeatable = option->get_items_expected_max() > 1;
            if (found != commands.end() && found->choices.contains(option->get_name(true)))
                operandChoices = array(found->choices.at(option->get_name(true))());
            continue;
        }
        std::vector<std::string> choices;
        if (found != commands.end() && found->choices.contains(option->get_name()))
            choices = found->choices.at(option->get_name())();
        options.append(object(*option, choices));
    }
    std::vector<std::string> names;
    for (const CLI::App* below : command.get_subcommands({}))
        names.push_back(below->get_name());
    table.append(QJsonObject{{u"command"_s, shown(words)},
                             {u"subcommands"_s, array(names)},
                             {u"operands"_s, operands},
                             {u"operandChoices"_s, operandChoices},
                             {u"areOperandsRequired"_s, areOperandsRequired},
                             {u"isLastOperandRepeatable"_s, isLastOperandRepeatable},
                             {u"options"_s, options}});
    for (const CLI::App* below : command.get_subcommands({}))
        append(table, *below, (words.empty() ? "" : words + " ") + below->get_name(), commands);
}

} // namespace

int main() {
    CLI::App app;
    const std::vector<Command> commands = addCommands(app);
    QJsonArray table;
    append(table, app, "", commands);
    std::puts(QJsonDocument(table).toJson().constData());
    return 0;
}

#include "cli/HelpText.h"

#include <algorithm>
#include <sstream>
#include <utility>
#include <vector>

namespace {

using HelpRow = std::pair<std::string, std::string>;

/// On narrower terminals a description stands below its name.
constexpr int narrowest = 60;
constexpr std::size_t nameColumn = 26;

/// The number of characters in UTF-8.
std::size_t width(const std::string& text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

/// Appends words to a text, and begins a new line where one would grow too long.
class Paragraph {
  public:
    /// Lines but the first begin with `indent` blanks; `lineEnd` stands at the end of each but the last.
    Paragraph(std::string start, std::size_t indent, std::size_t columns, std::string lineEnd = {})
        : m_text(std::move(start)),
          m_lineEnd(std::move(lineEnd)),
          m_indent(indent),
          m_columns(columns),
          m_at(width(m_text)) {}

    Paragraph& add(const std::string& words) {
        std::istringstream stream(words);
        for (std::string word; stream >> word;)
            addWord(word);
        return *this;
    }

    /// Adds words that stay on one line.
    Paragraph& addWord(const std::string& word) {
        if (m_hasWord && m_at + 1 + width(word) + width(m_lineEnd) > m_columns) {
            m_text += m_lineEnd + "\n" + std::string(m_indent, ' ');
            m_at = m_indent;
        } else if (m_hasWord) {
            m_text += ' ';
            ++m_at;
        }
        m_text += word;
        m_at += width(word);
        m_hasWord = true;
        return *this;
    }

    std::string text() const { return m_text + "\n"; }

  private:
    std::string m_text;
    std::string m_lineEnd;
    std::size_t m_indent;
    std::size_t m_columns;
    std::size_t m_at;
    bool m_hasWord = false;
};

/// "tobrimax-cli icns list".
std::string fullName(const CLI::App& command) {
    return (command.get_parent() != nullptr ? fullName(*command.get_parent()) + " " : "") +
           command.get_name();
}

bool takesValue(const CLI::Option& option) {
    return option.get_items_expected_max() > 0;
}

/// "-o, --out DIR", or the name of an operand.
std::string nameOf(const CLI::Option& option) {
    if (option.get_positional())
        return option.get_name(true);
    std::string text;
    for (const std::string& name : option.get_snames())
        text += (text.empty() ? "-" : ", -") + name;
    for (const std::string& name : option.get_lnames())
        text += (text.empty() ? "    --" : ", --") + name;
    return takesValue(option) ? text + " " + option.get_type_name() : text;
}

/// An operand as the usage shows it: "PICTURE...", "[NAME]".
std::string operand(const CLI::Option& option) {
    const std::string name = option.get_name(true) + (option.get_items_expected_max() > 1 ? "..." : "");
    return option.get_required() ? name : "[" + name + "]";
}

std::string usage(const CLI::App& command, std::size_t columns) {
    constexpr std::size_t indent = 4;
    Paragraph paragraph("Usage:", indent, columns);
    paragraph.addWord(" " + fullName(command));
    for (const CLI::Option* option : command.get_options()) {
        if (option->get_positional())
            paragraph.addWord(operand(*option));
    }
    for (const CLI::Option* option : command.get_options()) {
        if (!option->get_positional() && option->get_required())
            paragraph.addWord("--" + option->get_lnames().front() + " " + option->get_type_name());
    }
    if (!command.get_subcommands({}).empty())
        paragraph.addWord("COMMAND");
    return paragraph.addWord("[OPTION]...").text();
}

std::string table(const std::vector<HelpRow>& rows, int columns) {
    constexpr std::size_t below = 6;
    const std::size_t indent = columns < narrowest ? below : nameColumn;
    std::string text;
    for (const auto& [name, description] : rows) {
        std::string start = "  " + name;
        // Two blanks part a name from its description.
        if (width(start) + 2 > indent) {
            text += start + "\n";
            start.clear();
        }
        start.resize(start.size() + indent - width(start), ' ');
        text += Paragraph(start, indent, static_cast<std::size_t>(columns)).add(description).text();
    }
    return text;
}

std::string section(const std::string& title, const std::vector<HelpRow>& rows, int columns) {
    return rows.empty() ? std::string() : "\n" + title + table(rows, columns);
}

} // namespace

std::string helpText(const CLI::App& command, int columns) {
    const auto width = static_cast<std::size_t>(columns);
    constexpr std::size_t indent = 4;
    std::string text = "Example:\n" + Paragraph("  ", indent, width, " \\").add(command.get_footer()).text();
    text += "\n" + Paragraph("", 0, width).add(command.get_description() + ".").text();
    text += "\n" + usage(command, width);
    std::vector<HelpRow> operands;
    std::vector<HelpRow> options;
    for (const CLI::Option* option : command.get_options())
        (option->get_positional() ? operands : options)
            .emplace_back(nameOf(*option), option->get_description());
    std::vector<HelpRow> commands;
    for (const CLI::App* below : command.get_subcommands({}))
        commands.emplace_back(below->get_name(), below->get_description());
    text += section("", operands, columns);
    text += section("Commands:\n", commands, columns);
    text += section("Options:\n", options, columns);
    if (!commands.empty())
        text += "\n" + Paragraph("", 0, width)
                           .add(fullName(command) + " COMMAND --help tells what a command takes.")
                           .text();
    return text;
}

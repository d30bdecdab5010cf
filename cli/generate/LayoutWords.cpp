#include "cli/generate/LayoutWords.h"

#include "files/FileItem.h"
#include "files/PathBytes.h"
#include "layouts/LayoutCatalogue.h"

std::vector<std::string> LayoutWords::names() {
    std::vector<std::string> names;
    for (const QString& name : LayoutCatalogue::names())
        names.push_back(name.toStdString());
    return names;
}

std::string LayoutWords::known(const std::string& word) {
    const std::vector<std::string> all = names();
    const Parsed<std::size_t> found = OptionText::choice("layout", word, all);
    return std::holds_alternative<std::size_t>(found) ? all[std::get<std::size_t>(found)] : word;
}

void LayoutWords::addTo(CLI::App& command) {
    command
        .add_option("-l,--layout", layouts,
                    "write icons into a project in DIR: a layout's name (see tobrimax-cli layouts) or file; "
                    "may be given "
                    "several times")
        ->type_name("NAME|FILE")
        ->take_all()
        ->allow_extra_args(false);
    command.add_option("--background", background, "lay the icons on this colour; they get no alpha channel")
        ->type_name("COLOR");
    command.add_option("--name", name, "the app's name, for layouts (default: the picture's name)")
        ->type_name("NAME");
    command.add_option("--dark", dark, "the picture for dark icons, for layouts")->type_name("PICTURE");
    command.add_option("--tinted", tinted, "the picture for tinted icons, for layouts")->type_name("PICTURE");
    command.add_option("--foreground", foreground, "the front layer of Android's icons, for layouts")
        ->type_name("PICTURE");
    command.add_option("--monochrome", monochrome, "the shape of Android's themed icons, for layouts")
        ->type_name("PICTURE");
}

std::optional<UsageError> LayoutWords::addTo(GenerateOptions& options, const CLI::App& command) const {
    std::optional<UsageError> error;
    for (const std::string& layout : layouts) {
        // A file's name may have a comma.
        const bool isOne = FileItem::isThere(PathBytes::decoded(layout));
        for (const std::string& part : isOne ? std::vector{layout} : OptionText::list(layout)) {
            QString text;
            if (!take(OptionText::path(known(part), "--layout"), text, error))
                return error;
            if (!options.layouts.contains(text))
                options.layouts << text;
        }
    }
    if (command.count("--background") > 0) {
        Color color;
        if (!take(OptionText::color(background), color, error))
            return error;
        if (color.alpha < 1)
            return UsageError{"--background takes an opaque colour, not '" + background + "'"};
        options.background = color;
    }
    for (const char* option : {"--name", "--dark", "--tinted", "--foreground", "--monochrome"}) {
        if (command.count(option) > 0 && layouts.empty())
            return UsageError{std::string(option) + " belongs to --layout"};
    }
    for (const char* option : {"--platform", "--catalogue"}) {
        if (command.count(option) > 0 && !layouts.empty())
            return UsageError{std::string(option) + " and --layout exclude each other"};
    }
    if (command.count("--name") > 0 && !take(OptionText::path(name, "--name"), options.name, error))
        return error;
    options.dark = dark;
    options.tinted = tinted;
    options.foreground = foreground;
    options.monochrome = monochrome;
    return std::nullopt;
}

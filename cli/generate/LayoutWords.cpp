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

bool LayoutWords::isName(const std::string& word) {
    return std::holds_alternative<std::size_t>(OptionText::choice("layout", word, names()));
}

std::string LayoutWords::known(const std::string& word) {
    const std::vector<std::string> all = names();
    const Parsed<std::size_t> found = OptionText::choice("layout", word, all);
    return std::holds_alternative<std::size_t>(found) ? all[std::get<std::size_t>(found)] : word;
}

void LayoutWords::addTo(CLI::App& command) {
    command
        .add_option(
            "-l,--layout", layouts,
            "write icons into the project in DIR: a layout's file, or a name that tobrimax-cli layouts "
            "lists; several with commas (default: a folder for each platform)")
        ->type_name("NAME|FILE")
        ->take_all()
        ->allow_extra_args(false);
    command
        .add_option("--background", background,
                    "lay the icons on this colour; they get no alpha channel then (default: none, or white "
                    "where a layout needs one)")
        ->type_name("COLOR");
    command.add_option("--name", name, "for layouts: the app's name (default: the picture's name)")
        ->type_name("NAME");
    command.add_option("--dark", dark, "for layouts: the picture for dark icons (default: none are made)")
        ->type_name("PICTURE");
    command
        .add_option("--tinted", tinted, "for layouts: the picture for tinted icons (default: none are made)")
        ->type_name("PICTURE");
    command
        .add_option("--foreground", foreground,
                    "for layouts: the front layer of Android's icons (default: PICTURE)")
        ->type_name("PICTURE");
    command
        .add_option("--monochrome", monochrome,
                    "for layouts: the shape of Android's themed icons (default: that of the front layer)")
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
        if (!take(OptionText::opaqueColor("--background", background), color, error))
            return error;
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

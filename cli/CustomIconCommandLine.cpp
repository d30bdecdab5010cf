// Parses the command lines of `custom-icon`.
#include "cli/CustomIconCommands.h"
#include "cli/common/Command.h"

#include <memory>

namespace {

using Work = std::function<int()>;

struct CustomIconWords {
    std::string path;
    CustomIconOptions options;
};

void addStore(CLI::App& command, CustomIconOptions& options) {
    command.add_flag("--apple-double", options.appleDouble,
                     "keep the icon in an AppleDouble file (\"._NAME\") beside the item (default: with the "
                     "item, which only a "
                     "Mac can)");
}

Parsed<CustomIconOptions> optionsFrom(const CustomIconWords& words) {
    CustomIconOptions options = words.options;
    std::optional<UsageError> error;
    if (!take(OptionText::path(words.path, "PATH"), options.path, error))
        return *error;
    return options;
}

Command command(CLI::App* app, const std::shared_ptr<CustomIconWords>& words,
                int (*run)(const CustomIconOptions&)) {
    const auto prepare = [words, run, app]() -> Parsed<Work> {
        if (app->get_option_no_throw("FILE.icns") != nullptr && words->options.file.empty())
            return UsageError{"FILE.icns is empty"};
        const Parsed<CustomIconOptions> options = optionsFrom(*words);
        if (const auto* error = std::get_if<UsageError>(&options))
            return *error;
        return [run, options = std::get<CustomIconOptions>(options)] { return run(options); };
    };
    return {app, prepare, {}};
}

} // namespace

std::vector<Command> customIconCommands(CLI::App& app) {
    CLI::App* customIcon = app.add_subcommand("custom-icon", "Give files and folders icons of their own");
    customIcon->footer("tobrimax-cli custom-icon set \"My App\" logo.icns --apple-double");
    customIcon->require_subcommand(0, 1);
    const auto setWords = std::make_shared<CustomIconWords>();
    CLI::App* set = customIcon->add_subcommand("set", "Make an icns file the icon of a file or folder");
    set->footer("tobrimax-cli custom-icon set \"My App\" logo.icns --apple-double");
    set->add_option("PATH", setWords->path, "the file or folder")->required();
    set->add_option("FILE.icns", setWords->options.file, "the icon")->required();
    addStore(*set, setWords->options);
    set->add_flag(
        "--compatibility", setWords->options.compatibility,
        "also store the 1- and 8-bit elements that old systems show, if the icon has them (default: no)");
    set->add_flag("--create", setWords->options.create,
                  "make an empty file if there is none at PATH (default: that is an error)");
    const auto removeWords = std::make_shared<CustomIconWords>();
    CLI::App* remove = customIcon->add_subcommand("remove", "Take the icon off a file or folder");
    remove->footer("tobrimax-cli custom-icon remove \"My App\" --apple-double");
    remove->add_option("PATH", removeWords->path, "the file or folder")->required();
    addStore(*remove, removeWords->options);
    return {command(set, setWords, runCustomIconSet), command(remove, removeWords, runCustomIconRemove)};
}

// Parses the command line of `layouts`.
#include "cli/LayoutsCommand.h"
#include "cli/common/Command.h"
#include "cli/generate/LayoutWords.h"

#include <memory>

namespace {

struct LayoutsWords {
    std::string layout;
    bool json = false;
};

} // namespace

Command layoutsCommand(CLI::App& app) {
    const auto words = std::make_shared<LayoutsWords>();
    Command command;
    command.app = app.add_subcommand("layouts", "List the layouts for projects, or the files of one");
    command.app->footer("tobrimax-cli layouts flutter");
    command.app->add_option("NAME", words->layout,
                            "a layout's name, or the path of a layout file (default: the list of all)");
    command.app->add_flag("--json", words->json, "print one JSON document instead of lines");
    command.prepare = [app = command.app, words]() -> Parsed<std::function<int()>> {
        LayoutsOptions options;
        options.json = words->json;
        std::optional<UsageError> error;
        if (app->count("NAME") > 0 &&
            !take(OptionText::path(LayoutWords::known(words->layout), "NAME"), options.layout, error))
            return *error;
        return [options] { return runLayouts(options); };
    };
    command.choices = {{"NAME", LayoutWords::names}};
    return command;
}

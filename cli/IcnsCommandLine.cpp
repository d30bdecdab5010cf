// Parses the command lines of `icns`.
#include "cli/IcnsCommands.h"
#include "cli/common/Command.h"
#include "cli/common/FitWords.h"
#include "cli/common/ProofOption.h"
#include "cli/common/SmallWords.h"
#include "cli/common/StyleWords.h"
#include "cli/common/SvgLimitWords.h"
#include "imaging/io/PictureFormat.h"

#include <memory>

namespace {

using Work = std::function<int()>;

Command listCommand(CLI::App& icns) {
    struct Words {
        IcnsListOptions options;
        std::string proof;
    };
    const auto words = std::make_shared<Words>();
    Command command;
    command.app = icns.add_subcommand("list", "Print what an icns file holds, and what is odd about it");
    command.app->footer("tobrimax-cli icns list Application.icns");
    command.app->add_option("FILE", words->options.file, "an icns file")->required();
    ProofOption::addTo(*command.app, words->proof);
    command.app->add_flag("--json", words->options.json, "print one JSON document instead of lines");
    command.prepare = [words, app = command.app]() -> Parsed<Work> {
        IcnsListOptions options = words->options;
        std::optional<UsageError> error;
        if (options.file.empty())
            return UsageError{"FILE is empty"};
        if (app->count("--proof") > 0 &&
            !take(ProofOption::path(words->proof, options.file), options.proof, error))
            return *error;
        return [options] { return runIcnsList(options); };
    };
    return command;
}

struct ExtractWords {
    std::string file;
    std::string out;
};

Command extractCommand(CLI::App& icns) {
    const auto words = std::make_shared<ExtractWords>();
    Command command;
    command.app = icns.add_subcommand("extract", "Write each picture of an icns file as a PNG file");
    command.app->footer("tobrimax-cli icns extract Application.icns --out pictures");
    command.app->add_option("FILE", words->file, "an icns file")->required();
    command.app
        ->add_option("-o,--out", words->out,
                     "the folder for the files, which are named TYPE_WxH.png; it is made if it is missing")
        ->required()
        ->type_name("DIR");
    command.prepare = [words]() -> Parsed<Work> {
        IcnsExtractOptions options;
        options.file = words->file;
        std::optional<UsageError> error;
        if (options.file.empty())
            return UsageError{"FILE is empty"};
        if (!take(OptionText::path(words->out, "--out"), options.out, error))
            return *error;
        return [options] { return runIcnsExtract(options); };
    };
    return command;
}

struct MakeWords {
    std::string picture;
    std::string out;
    StyleWords style;
    FitWords fit;
    SmallWords small;
    std::string background;
    SvgLimitWords svgLimit;
};

Command makeCommand(CLI::App& icns) {
    const auto words = std::make_shared<MakeWords>();
    Command command;
    command.app = icns.add_subcommand("make", "Write an icns file of one picture, in seven sizes");
    command.app->footer("tobrimax-cli icns make logo.svg --out logo.icns --round-corner 0.22");
    command.app->add_option("PICTURE", words->picture, "a file: " + PictureFormats::names().toStdString())
        ->required();
    command.app->add_option("-o,--out", words->out, "the file to write")->required()->type_name("FILE.icns");
    words->style.addTo(*command.app);
    words->fit.addTo(*command.app);
    words->small.addTo(*command.app);
    command.app->add_option("--background", words->background, "lay the icons on this colour")
        ->type_name("COLOR");
    words->svgLimit.addTo(*command.app);
    command.prepare = [words, app = command.app]() -> Parsed<Work> {
        IcnsMakeOptions options;
        options.picture.path = words->picture;
        std::optional<UsageError> error;
        if (words->picture.empty())
            return UsageError{"PICTURE is empty"};
        if (!take(OptionText::path(words->out, "--out"), options.out, error) ||
            !take(words->style.style(*app), options.style, error) ||
            !take(words->fit.pictureFit(*app), options.picture.fit, error) ||
            !take(words->small.pictures(), options.picture.small, error) ||
            !take(words->svgLimit.seconds(*app, options.picture.svgSeconds), options.picture.svgSeconds,
                  error))
            return *error;
        Color background;
        if (app->count("--background") > 0) {
            if (!take(OptionText::opaqueColor("--background", words->background), background, error))
                return *error;
            options.background = background;
        }
        return [options] { return runIcnsMake(options); };
    };
    command.choices = {{"--fit", FitWords::names}};
    return command;
}

} // namespace

std::vector<Command> icnsCommands(CLI::App& app) {
    CLI::App* icns = app.add_subcommand("icns", "List, extract and make icns files");
    icns->footer("tobrimax-cli icns list Application.icns");
    icns->require_subcommand(0, 1);
    return {listCommand(*icns), extractCommand(*icns), makeCommand(*icns)};
}

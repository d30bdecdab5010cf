// Parses the command line of `export`.
#include "cli/ExportCommand.h"
#include "cli/common/Command.h"
#include "cli/common/FitWords.h"
#include "cli/common/SvgLimitWords.h"
#include "imaging/io/PictureFormat.h"

#include <QStringList>

#include <algorithm>
#include <memory>

namespace {

using Work = std::function<int()>;

/// The formats' words in the order of ImageExport's numbers.
const std::vector<std::string>& formatWords() {
    static const std::vector<std::string> words{"jpeg", "tiff", "bmp", "gif", "png", "jpeg2000"};
    return words;
}

struct ExportWords {
    std::string picture;
    std::string format;
    std::string out;
    std::string size;
    FitWords fit;
    SvgLimitWords svgLimit;
};

/// Parses a size such as "640x480".
Parsed<QSize> size(const std::string& text) {
    const QStringList parts = QString::fromStdString(text).split(u'x');
    constexpr int longest = 1000000;
    bool isWidth = false;
    bool isHeight = false;
    const int width = parts.first().toInt(&isWidth);
    const int height = parts.last().toInt(&isHeight);
    if (parts.size() != 2 || !isWidth || !isHeight || std::min(width, height) < 1 ||
        std::max(width, height) > longest)
        return UsageError{"--size takes a width and a height in pixels, such as 640x480, not '" + text + "'"};
    return QSize(width, height);
}

Parsed<ExportOptions> optionsFrom(const CLI::App& app, const ExportWords& words) {
    ExportOptions options;
    options.picture = words.picture;
    QSize pixels;
    std::size_t format = 0;
    std::optional<UsageError> error;
    if (options.picture.empty())
        return UsageError{"PICTURE is empty"};
    if (!take(OptionText::choice("format", words.format, formatWords()), format, error) ||
        !take(OptionText::path(words.out, "--out"), options.out, error) ||
        (app.count("--size") > 0 && !take(size(words.size), pixels, error)) ||
        !take(words.fit.pictureFit(app), options.fit, error) ||
        !take(words.svgLimit.seconds(app, options.svgSeconds), options.svgSeconds, error))
        return *error;
    options.format = format;
    if (pixels.isValid())
        options.size = pixels;
    return options;
}

} // namespace

Command exportCommand(CLI::App& app) {
    const auto words = std::make_shared<ExportWords>();
    Command command;
    command.app = app.add_subcommand("export", "Write a picture in one of six formats");
    command.app->footer("tobrimax-cli export logo.svg --format png --out logo.png --size 640x480");
    command.app->add_option("PICTURE", words->picture, "a file: " + PictureFormats::names().toStdString())
        ->required();
    command.app
        ->add_option(
            "--format", words->format,
            "the format: jpeg (over white), tiff, bmp, gif (up to 255 colours), png or jpeg2000 (lossless)")
        ->required()
        ->type_name("NAME");
    command.app->add_option("-o,--out", words->out, "the file to write; --format alone decides on its format")
        ->required()
        ->type_name("FILE");
    command.app
        ->add_option(
            "--size", words->size,
            "the size in pixels, whose shape the picture takes unless --fit says otherwise (default: "
            "its own size)")
        ->type_name("WxH");
    words->fit.addTo(*command.app);
    words->svgLimit.addTo(*command.app);
    command.prepare = [words, app = command.app]() -> Parsed<Work> {
        const Parsed<ExportOptions> options = optionsFrom(*app, *words);
        if (const auto* error = std::get_if<UsageError>(&options))
            return *error;
        return [options = std::get<ExportOptions>(options)] { return runExport(options); };
    };
    command.choices = {{"--format", formatWords}, {"--fit", FitWords::names}};
    return command;
}

#include "cli/common/FitWords.h"

#include <optional>

namespace {

Parsed<double> paddingOf(const std::string& text) {
    bool isNumber = false;
    const double value = QString::fromStdString(text).toDouble(&isNumber);
    if (!isNumber || !(value >= 0) || !(value < 0.5))
        return UsageError{"--padding takes a fraction from 0 to below 0.5, not '" + text + "'"};
    return value;
}

} // namespace

const std::vector<std::string>& FitWords::names() {
    static const std::vector<std::string> words{"stretch", "contain", "cover"};
    return words;
}

void FitWords::addTo(CLI::App& command) {
    command
        .add_option("--fit", fit,
                    "how a picture of another shape is laid on its icon: stretch (the default), contain (all "
                    "of it, with free space at two edges) or cover (cut off at two edges)")
        ->type_name("NAME");
    command
        .add_option("--padding", padding,
                    "the free margin at each edge as a fraction of the shorter side, 0 to below 0.5")
        ->type_name("F");
}

Parsed<PictureFit> FitWords::pictureFit(const CLI::App& command) const {
    PictureFit result;
    std::optional<UsageError> error;
    const bool isTaken =
        (command.count("--fit") == 0 ||
         take(OptionText::valueOf<PictureFit::Shape>("fit", fit, names()), result.shape, error)) &&
        (command.count("--padding") == 0 || take(paddingOf(padding), result.padding, error));
    if (!isTaken)
        return *error;
    return result;
}

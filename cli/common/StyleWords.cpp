#include "cli/common/StyleWords.h"

void StyleWords::addTo(CLI::App& command) {
    command
        .add_option(
            "--round-corner", roundCorner,
            "corner radius as a fraction of the side, 0 to 1; 0.22 is usual (default: no round corners)")
        ->type_name("F");
    command
        .add_option(
            "--border", border,
            "border width as a fraction of the width, 0 to 1; its inner half shows (default: no border)")
        ->type_name("F");
    command
        .add_option("--border-color", borderColor,
                    "the border's colour: #RGB, #RRGGBB, #RRGGBBAA or a name (default: #333333)")
        ->type_name("COLOR");
}

Parsed<IconStyle> StyleWords::style(const CLI::App& command) const {
    IconStyle style;
    const bool hasColor = command.count("--border-color") > 0;
    style.roundCorner = command.count("--round-corner") > 0;
    style.border = command.count("--border") > 0;
    std::optional<UsageError> error;
    const bool isTaken =
        (!style.roundCorner ||
         take(OptionText::fraction("--round-corner", roundCorner), style.cornerRadiusPercent, error)) &&
        (!style.border || take(OptionText::fraction("--border", border), style.borderWidth, error)) &&
        (!hasColor || take(OptionText::color(borderColor), style.borderColor, error));
    if (!isTaken)
        return *error;
    if (hasColor && !style.border)
        return UsageError{"--border-color needs --border"};
    return style;
}

#include "cli/common/SvgLimitWords.h"

#include <QString>

void SvgLimitWords::addTo(CLI::App& command) {
    command
        .add_option("--svg-limit", limit,
                    "how many seconds of processor time an SVG picture may take, 1 to 86400 (default 10)")
        ->type_name("SECONDS");
}

Parsed<double> SvgLimitWords::seconds(const CLI::App& command, double standard) const {
    if (command.count("--svg-limit") == 0)
        return standard;
    constexpr int longest = 24 * 60 * 60;
    bool isNumber = false;
    const int number = QString::fromStdString(limit).toInt(&isNumber);
    if (!isNumber || number < 1 || number > longest)
        return UsageError{"--svg-limit takes a whole number of seconds from 1 to 86400, not '" + limit + "'"};
    return static_cast<double>(number);
}

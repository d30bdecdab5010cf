#include "cli/generate/SetWarnings.h"

#include <algorithm>

namespace {

/// The platforms of Apple's store whose systems cut icons to their shape, among those that are written.
QString cutPlatforms(const GenerateOptions& options, const std::vector<PlannedFile>& files) {
    constexpr std::pair<Platform, const char*> names[] = {
        {Platform::Iphone, "iPhone"}, {Platform::Ipad, "iPad"}, {Platform::Watch, "Apple Watch"}};
    QStringList written;
    for (const auto& [platform, name] : names) {
        const bool isWritten =
            std::ranges::find(files, Platforms::idiom(platform), &PlannedFile::idiom) != files.end();
        if (std::ranges::find(options.platforms, platform) != options.platforms.end() && isWritten)
            written << QLatin1String(name);
    }
    if (written.size() < 2)
        return written.join(QString());
    const QString last = written.takeLast();
    return written.join(QStringLiteral(", ")) + QStringLiteral(" and ") + last;
}

} // namespace

QStringList SetWarnings::ofPlatforms(const GenerateOptions& options, const std::vector<PlannedFile>& files) {
    QStringList warnings;
    const QString platforms = cutPlatforms(options, files);
    if (platforms.isEmpty())
        return warnings;
    if (!options.background)
        warnings << QStringLiteral("the icons for %1 have an alpha channel, which the App Store refuses "
                                   "(--background COLOR makes them without one)")
                        .arg(platforms);
    if (options.style.hasRoundCorners())
        warnings << QStringLiteral("the icons for %1 have rounded corners, but the system cuts them itself "
                                   "(make these sets without --round-corner)")
                        .arg(platforms);
    return warnings;
}

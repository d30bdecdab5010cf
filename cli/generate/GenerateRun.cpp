#include "cli/generate/GenerateRun.h"

#include "cli/generate/GenerateCommand.h"
#include "cli/generate/GenerateLayouts.h"
#include "cli/generate/PictureName.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"

namespace {

/// The first two pictures whose sets would go into one folder.
std::optional<UsageError> doubledName(const std::vector<std::string>& pictures, const QString& out) {
    std::map<QString, std::string> owners;
    for (const std::string& picture : pictures) {
        const QString name = pictureName(picture);
        const auto [owner, isNew] = owners.emplace(name, picture);
        if (!isNew)
            return UsageError{"'" + owner->second + "' and '" + picture + "' would both go to " +
                              appendingPathComponent(out, name).toStdString()};
    }
    return std::nullopt;
}

} // namespace

Parsed<std::vector<GenerateRun>> GenerateRuns::of(const OptionValues& values) {
    std::optional<UsageError> error;
    GenerateOptions common;
    if (!take(parsed(values), common, error))
        return *error;
    const std::vector<std::string>& pictures = values.at("PICTURE");
    if (pictures.size() == 1)
        return std::vector<GenerateRun>{{values, common, common.out}};
    if (!common.proof.isEmpty())
        return UsageError{"--proof shows the icons of one PICTURE, not of several"};
    if (const std::optional<UsageError> doubled = doubledName(pictures, common.out))
        return *doubled;
    std::vector<GenerateRun> runs;
    for (const std::string& picture : pictures) {
        if (picture.empty())
            return UsageError{"PICTURE is empty"};
        GenerateRun run{values, common, common.out};
        run.options.picture = picture;
        run.options.out = appendingPathComponent(common.out, pictureName(picture));
        run.values["PICTURE"] = {picture};
        run.values["--out"] = {PathBytes::encoded(run.options.out).toStdString()};
        runs.push_back(std::move(run));
    }
    return runs;
}

int GenerateRuns::make(const GenerateOptions& options) {
    return options.layouts.isEmpty() ? runGenerate(options) : runGenerateLayouts(options);
}

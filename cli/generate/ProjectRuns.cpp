#include "cli/generate/ProjectRuns.h"

#include "cli/common/CatalogueBundle.h"
#include "cli/common/UnscaledScreen.h"
#include "cli/generate/GenerateLayouts.h"
#include "files/FileItem.h"
#include "files/FilePath.h"
#include "files/RegularFile.h"
#include "generation/GenerationPlan.h"

namespace {

constexpr qint64 mostBytes = 1 << 20;

OptionValues valuesOf(const ProjectFile::Set& set, const OptionValues& typed) {
    OptionValues values = typed;
    for (auto entry = set.begin(); entry != set.end(); ++entry) {
        const std::string key = entry.key().toStdString();
        std::vector<std::string> texts;
        for (const QString& text : *entry)
            texts.push_back(text.toStdString());
        values.emplace(key == "picture" ? "PICTURE" : "--" + key, std::move(texts));
    }
    return values;
}

/// The files that a run may write, relative to its folder.
Result<QStringList> plannedPaths(const GenerateOptions& options) {
    if (!options.layouts.isEmpty())
        return layoutPaths(options);
    QStringList paths;
    // A catalogue that can't be read is told by the run.
    if (const Result<IconSizeCatalogue> catalogue =
            IconSizeCatalogue::load(CatalogueBundle(options.catalogue))) {
        const GenerationPlan plan(*catalogue, options.platforms, UnscaledScreen().scale());
        for (const PlannedFile& file : plan.remainingFiles())
            paths << file.path;
    }
    return paths;
}

/// Remembers which set writes which path.
class Writers {
  public:
    std::optional<Error> add(const GenerateOptions& options, std::size_t set) {
        const Result<QStringList> paths = plannedPaths(options);
        if (!paths)
            return Error{ErrorCode::Malformed,
                         QStringLiteral("set %1: %2").arg(set).arg(paths.error().sentence)};
        for (const QString& path : *paths) {
            const QString whole = appendingPathComponent(options.out, path);
            const auto [writer, isNew] = m_sets.emplace(FileItem::absolutePath(whole), set);
            if (!isNew && writer->second != set)
                return Error{ErrorCode::Malformed, QStringLiteral("set %1 and set %2 both write %3")
                                                       .arg(writer->second)
                                                       .arg(set)
                                                       .arg(whole)};
        }
        return std::nullopt;
    }

  private:
    std::map<QString, std::size_t> m_sets;
};

Result<std::vector<GenerateRun>> runsOf(const std::vector<ProjectFile::Set>& sets,
                                        const OptionValues& typed) {
    std::vector<GenerateRun> runs;
    Writers writers;
    for (std::size_t i = 0; i < sets.size(); ++i) {
        const QString where = QStringLiteral("set %1").arg(i + 1);
        const OptionValues values = valuesOf(sets[i], typed);
        for (const auto& [option, key] : {std::pair("PICTURE", "picture"), std::pair("--out", "out")}) {
            if (!values.contains(option))
                return Error{ErrorCode::Malformed,
                             QStringLiteral("%1: \"%2\" is missing").arg(where, QLatin1String(key))};
        }
        const Parsed<std::vector<GenerateRun>> parsed = GenerateRuns::of(values);
        if (const auto* error = std::get_if<UsageError>(&parsed))
            return Error{ErrorCode::Malformed,
                         QStringLiteral("%1: %2").arg(where, QString::fromStdString(error->sentence))};
        for (const GenerateRun& run : std::get<std::vector<GenerateRun>>(parsed)) {
            if (sets.size() > 1) {
                if (values.at("--out").front() == "-")
                    return Error{
                        ErrorCode::Malformed,
                        QStringLiteral("%1: only one set can be written as a tar stream").arg(where)};
                if (std::optional<Error> error = writers.add(run.options, i + 1))
                    return *error;
            }
            runs.push_back(run);
        }
    }
    return runs;
}

} // namespace

bool ProjectRuns::isFileThere() {
    return FileItem::isThere(QLatin1String(ProjectFile::name));
}

Result<std::vector<GenerateRun>> ProjectRuns::read(const std::vector<ProjectFile::Key>& keys,
                                                   const OptionValues& typed) {
    const auto inFile = [](const Error& error) { return about(QLatin1String(ProjectFile::name), error); };
    const Result<QByteArray> bytes = RegularFile::read(ProjectFile::name, mostBytes);
    if (!bytes)
        return inFile(bytes.error());
    const Result<std::vector<ProjectFile::Set>> sets = ProjectFile::read(*bytes, keys);
    if (!sets)
        return inFile(sets.error());
    Result<std::vector<GenerateRun>> runs = runsOf(*sets, typed);
    if (!runs)
        return inFile(runs.error());
    return runs;
}

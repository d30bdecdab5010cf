#include "mainwindow/ProjectGeneration.h"

#include "files/Folder.h"
#include "files/PathBytes.h"
#include "layouts/LayoutWarnings.h"
#include "layouts/LayoutWriter.h"

#include <utility>

namespace {

/// Collects what comes of a generation.
class Collector final : public GenerationObserver {
  public:
    Collector(const QString& folder, ProjectOutcome& outcome)
        : m_prefix(folder.endsWith(u'/') ? folder : folder + u'/'), m_outcome(outcome) {}

    void fileWritten(const File& file) override {
        m_outcome.files.push_back({file.idiom, below(file.path), file.pixelSize, file.bytes});
    }

    void failed(const QString& path, const Error& error) override {
        m_outcome.failures.push_back({below(path), error.sentence});
    }

  private:
    QString below(const QString& path) const {
        return path.startsWith(m_prefix) ? path.mid(m_prefix.size()) : path;
    }

    QString m_prefix;
    ProjectOutcome& m_outcome;
};

} // namespace

Result<SourcedPictures> ProjectGeneration::told(Result<SourcedPictures> pictures, const LayoutSet& set,
                                                const ProjectSettings& settings) const {
    if (!pictures)
        return pictures;
    const std::vector<LayoutFile> files = set.writtenFiles(pictures->pictures);
    for (const Warning& warning : layoutWarnings(files, pictures->pictures, {m_style, settings.background}))
        pictures->warnings.push_back(warning);
    return pictures;
}

Result<SourcedPictures> ProjectGeneration::preview(const LayoutSet& set,
                                                   const ProjectSettings& settings) const {
    QString failed;
    const LayoutSources sources{m_picture.kept(), settings.dark.kept(), settings.tinted.kept(),
                                settings.foreground.kept(), settings.monochrome.kept()};
    return told(loadedPictures(set, settings.fit, sources, failed), set, settings);
}

Result<ProjectOutcome> ProjectGeneration::write(const ProjectSettings& settings) const {
    const QString& folder = settings.folder;
    if (const Result<Done> checked = Folder::checkTarget(folder); !checked)
        return about(PathBytes::withReplacements(folder), checked.error());
    const Result<LayoutSet> set = LayoutSet::load(settings.layouts, folder, m_picture.name());
    if (!set)
        return set.error();
    const LayoutSources sources{m_picture.whole(),           settings.dark.whole(),
                                settings.tinted.whole(),     settings.foreground.whole(),
                                settings.monochrome.whole(), [this] { return m_picture.document(); }};
    QString failed;
    Result<SourcedPictures> loaded =
        told(loadedPictures(*set, settings.fit, sources, failed), *set, settings);
    if (!loaded)
        return about(PathBytes::withReplacements(failed), loaded.error());
    ProjectOutcome outcome;
    outcome.warnings = std::move(loaded->warnings);
    LayoutInput input;
    input.pictures = std::move(loaded->pictures);
    input.style = m_style;
    if (settings.background)
        input.background = *settings.background;
    input.name = m_picture.name();
    input.out = folder;
    Collector collector(folder, outcome);
    for (const Layout& layout : set->layouts())
        LayoutWriter::write(layout, input, collector);
    outcome.notes = set->notes(folder);
    return outcome;
}

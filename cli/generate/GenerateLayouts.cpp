#include "cli/generate/GenerateLayouts.h"

#include "base/StageTimes.h"
#include "cli/common/InputFile.h"
#include "cli/generate/GeneratePlace.h"
#include "cli/generate/GenerateProof.h"
#include "cli/generate/GenerateReport.h"
#include "cli/generate/OutputTarget.h"
#include "cli/generate/PictureName.h"
#include "files/PathBytes.h"
#include "imaging/svg/SvgDocument.h"
#include "layouts/LayoutSources.h"
#include "layouts/LayoutWarnings.h"
#include "layouts/LayoutWriter.h"

namespace {

QString appName(const GenerateOptions& options) {
    return options.name.isEmpty() ? pictureName(options.picture) : options.name;
}

/// The text of an SVG document, also of a compressed one; empty if it can't be read again.
QByteArray documentOf(const std::string& path) {
    constexpr qint64 mostBytes = 64 << 20;
    const Result<QByteArray> bytes = InputFile::read(path, mostBytes);
    return bytes ? SvgDocument::inflated(*bytes).valueOr({}) : QByteArray();
}

/// Loads the pictures and writes the layouts.
class LayoutRun {
  public:
    LayoutRun(const GenerateOptions& options, LayoutSet layouts, const QString& name)
        : m_options(options), m_layouts(std::move(layouts)), m_report(options), m_place(options) {
        m_input.style = options.style;
        m_input.name = name;
        m_input.out = options.out;
        m_input.effort = options.effort;
        if (options.background)
            m_input.background = *options.background;
    }

    int run() {
        if (const Result<Done> checked = m_place.check(); !checked)
            m_report.fail(m_options.out, checked.error());
        else if (loadPictures())
            write();
        return m_report.finish();
    }

  private:
    /// One of the further pictures, which may not have been given.
    LayoutSources::Source further(const std::string& path) const {
        if (path.empty())
            return {};
        return {PathBytes::decoded(path), [this, &path](const ReducedCopies::Renders& renders) {
                    return InputFile::loadPicture(path, {renders, {m_options.svgSeconds}},
                                                  m_options.tellsProgress());
                }};
    }

    bool loadPictures() {
        // The picture itself, or one of those for small icons.
        std::string failedFile = m_options.picture;
        const LayoutSources sources{{PathBytes::decoded(m_options.picture),
                                     [&](const ReducedCopies::Renders& renders) {
                                         return loadPicture(m_options.pictureFiles(),
                                                            renders.sizes.value_or(std::vector<QSizeF>()),
                                                            failedFile);
                                     }},
                                    further(m_options.dark),
                                    further(m_options.tinted),
                                    further(m_options.foreground),
                                    further(m_options.monochrome),
                                    [this] { return documentOf(m_options.picture); }};
        QString failed;
        Result<SourcedPictures> loaded = loadedPictures(m_layouts, m_options.fit, sources, failed);
        if (!loaded) {
            m_report.fail(failed == sources.main.path ? PathBytes::decoded(failedFile) : failed,
                          loaded.error());
            return false;
        }
        m_input.pictures = std::move(loaded->pictures);
        for (const Warning& warning : loaded->warnings)
            m_report.warn(warning.text());
        for (const Warning& warning :
             layoutWarnings(m_layouts.writtenFiles(m_input.pictures), m_input.pictures,
                            {m_options.style, m_options.background}))
            m_report.warn(warning.text());
        return true;
    }

    void write() {
        {
            Terminal::ProgressBar progress(static_cast<int>(m_layouts.writtenFiles(m_input.pictures).size()),
                                           m_options.tellsProgress());
            m_report.begin(progress);
            for (const Layout& layout : m_layouts.layouts()) {
                if (m_options.purpose == GeneratePurpose::List)
                    LayoutWriter::list(layout, m_input, m_report, m_place.place());
                else
                    LayoutWriter::write(layout, m_input, m_report, m_place.place());
            }
            m_report.end();
        }
        m_place.finish(m_report);
        if (!m_options.proof.isEmpty())
            GenerateProof::ofLayouts(m_options, m_layouts.layouts(), m_input, m_report);
        for (const LayoutNote& note : m_layouts.notes(m_options.out))
            m_report.note(note.file, note.line);
        if (m_options.open)
            OutputTarget::open(m_options.out, m_report);
    }

    const GenerateOptions& m_options;
    LayoutSet m_layouts;
    GenerateReport m_report;
    GeneratePlace m_place;
    LayoutInput m_input;
};

} // namespace

Result<QStringList> layoutPaths(const GenerateOptions& options) {
    const Result<LayoutSet> layouts = LayoutSet::load(options.layouts, options.out, appName(options));
    if (!layouts)
        return layouts.error();
    QStringList paths;
    for (const Layout& layout : layouts->layouts()) {
        for (const LayoutFile& file : layout.files)
            paths << file.path;
    }
    return paths;
}

int runGenerateLayouts(const GenerateOptions& options) {
    constexpr int wrongUsage = 2;
    if (options.timings)
        StageTimes::begin();
    Terminal::showDiagnosticLog(options.verbose);
    const QString name = appName(options);
    Result<LayoutSet> layouts = LayoutSet::load(options.layouts, options.out, name);
    if (layouts)
        return LayoutRun(options, std::move(*layouts), name).run();
    GenerateReport report(options);
    report.fail({}, layouts.error());
    report.finish();
    return wrongUsage;
}

#include "cli/generate/GenerateLayouts.h"

#include "base/StageTimes.h"
#include "cli/common/InputFile.h"
#include "cli/common/PictureWarnings.h"
#include "cli/generate/GeneratePlace.h"
#include "cli/generate/GenerateProof.h"
#include "cli/generate/GenerateReport.h"
#include "cli/generate/OutputTarget.h"
#include "cli/generate/PictureName.h"
#include "cli/generate/SetWarnings.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"
#include "imaging/svg/SvgDocument.h"
#include "layouts/LayoutCatalogue.h"
#include "layouts/LayoutVariables.h"
#include "layouts/LayoutWriter.h"

#include <QMap>

#include <algorithm>
#include <iterator>

namespace {

QString appName(const GenerateOptions& options) {
    return options.name.isEmpty() ? pictureName(options.picture) : options.name;
}

/// The layouts with the values of their variables. The error of the first that can't be used; two layouts
/// that write one file are an error too.
Result<std::vector<Layout>> loadedLayouts(const GenerateOptions& options, const QString& name) {
    std::vector<Layout> layouts;
    QMap<QString, QString> writers;
    for (const QString& wanted : options.layouts) {
        Result<Layout> layout = LayoutCatalogue::load(wanted);
        if (layout)
            layout = withVariables(std::move(*layout), options.out, name);
        if (!layout)
            return layout.error().code == ErrorCode::NotFound
                       ? layout.error()
                       : about(QStringLiteral("layout \"%1\"").arg(wanted), layout.error());
        for (const LayoutFile& file : layout->files) {
            if (writers.contains(file.path))
                return Error{ErrorCode::Malformed,
                             QStringLiteral("the layouts \"%1\" and \"%2\" both write %3")
                                 .arg(writers.value(file.path), layout->name, file.path)};
            writers.insert(file.path, layout->name);
        }
        layouts.push_back(std::move(*layout));
    }
    return layouts;
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
    LayoutRun(const GenerateOptions& options, std::vector<Layout> layouts, const QString& name)
        : m_options(options), m_layouts(std::move(layouts)), m_report(options), m_place(options) {
        m_input.style = options.style;
        m_input.name = name;
        m_input.out = options.out;
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
    /// Loads the picture at `path` with the sizes in which it is drawn.
    std::optional<LoadedPicture> load(const std::string& path, const std::vector<QSizeF>& renders) {
        Result<LoadedPicture> picture = InputFile::loadPicture(
            path, {{renders, m_options.fit}, {m_options.svgSeconds}}, m_options.tellsProgress());
        if (picture)
            return std::move(*picture);
        m_report.fail(PathBytes::decoded(path), picture.error());
        return std::nullopt;
    }

    bool loadPictures() {
        std::vector<QSizeF> renders;
        std::vector<QSize> sizes;
        for (const Layout& layout : m_layouts) {
            std::ranges::copy(LayoutWriter::renders(layout.files), std::back_inserter(renders));
            for (const LayoutFile& file : layout.files)
                sizes.insert(sizes.end(), file.sizes.begin(), file.sizes.end());
        }
        std::string failed;
        const Result<LoadedPicture> main = loadPicture(m_options.pictureFiles(), renders, failed);
        if (!main) {
            m_report.fail(PathBytes::decoded(failed), main.error());
            return false;
        }
        for (const QString& warning : pictureWarnings(*main, {sizes, m_options.fit}))
            m_report.warn(warning);
        m_input.pictures.main = main->image;
        if (main->isDrawing)
            m_input.pictures.document = documentOf(m_options.picture);
        const std::pair<const std::string&, std::optional<Image>&> others[] = {
            {m_options.dark, m_input.pictures.dark},
            {m_options.tinted, m_input.pictures.tinted},
            {m_options.foreground, m_input.pictures.foreground},
            {m_options.monochrome, m_input.pictures.monochrome}};
        for (const auto& [path, image] : others) {
            if (path.empty())
                continue;
            const std::optional<LoadedPicture> picture = load(path, renders);
            if (!picture)
                return false;
            for (const QString& warning : picture->warnings)
                m_report.warn(QStringLiteral("%1: %2").arg(PathBytes::decoded(path), warning));
            image = picture->image;
        }
        for (const QString& warning : SetWarnings::ofLayouts(m_options, writtenFiles(), m_input.pictures))
            m_report.warn(warning);
        return true;
    }

    /// The files of all layouts that are written with the pictures.
    std::vector<LayoutFile> writtenFiles() const {
        std::vector<LayoutFile> files;
        for (const Layout& layout : m_layouts)
            std::ranges::move(LayoutWriter::writtenFiles(layout, m_input.pictures),
                              std::back_inserter(files));
        return files;
    }

    void write() {
        {
            Terminal::ProgressBar progress(static_cast<int>(writtenFiles().size()),
                                           m_options.tellsProgress());
            m_report.begin(progress);
            for (const Layout& layout : m_layouts) {
                if (m_options.purpose == GeneratePurpose::List)
                    LayoutWriter::list(layout, m_input, m_report, m_place.place());
                else
                    LayoutWriter::write(layout, m_input, m_report, m_place.place());
            }
            m_report.end();
        }
        m_place.finish(m_report);
        if (!m_options.proof.isEmpty())
            GenerateProof::ofLayouts(m_options, m_layouts, m_input, m_report);
        for (const Layout& layout : m_layouts) {
            for (const LayoutNote& note : LayoutWriter::notes(layout, m_options.out))
                m_report.note(note.file, note.line);
        }
        if (m_options.open)
            OutputTarget::open(m_options.out, m_report);
    }

    const GenerateOptions& m_options;
    std::vector<Layout> m_layouts;
    GenerateReport m_report;
    GeneratePlace m_place;
    LayoutInput m_input;
};

} // namespace

Result<QStringList> layoutPaths(const GenerateOptions& options) {
    const Result<std::vector<Layout>> layouts = loadedLayouts(options, appName(options));
    if (!layouts)
        return layouts.error();
    QStringList paths;
    for (const Layout& layout : *layouts) {
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
    Result<std::vector<Layout>> layouts = loadedLayouts(options, name);
    if (layouts)
        return LayoutRun(options, std::move(*layouts), name).run();
    GenerateReport report(options);
    report.fail({}, layouts.error());
    report.finish();
    return wrongUsage;
}

#include "cli/generate/GenerateCommand.h"

#include "base/StageTimes.h"
#include "cli/common/CatalogueBundle.h"
#include "cli/common/InputFile.h"
#include "cli/common/UnscaledScreen.h"
#include "cli/generate/GeneratePlace.h"
#include "cli/generate/GenerateProof.h"
#include "cli/generate/GenerateReport.h"
#include "cli/generate/OutputTarget.h"
#include "cli/generate/SetWarnings.h"
#include "files/FileItem.h"
#include "files/FilePath.h"
#include "files/PathBytes.h"
#include "generation/GenerationPlan.h"
#include "generation/IconSetGenerator.h"
#include "generation/PictureWarnings.h"

namespace {

using Catalogue = IconSizeCatalogue;

/// Passes the command's options to the generator, one platform at a time.
class OptionsInput final : public GenerationInput {
  public:
    OptionsInput(const GenerateOptions& options, Image image)
        : m_options(options), m_image(std::move(image)) {}

    const GenerateOptions& options() const { return m_options; }
    void choosePlatform(Platform platform) { m_platformIndex = Platforms::indexOf(platform); }

    Image sourceImage() const override { return m_image; }
    int platformIndex() const override { return m_platformIndex; }
    QString outputPathString() const override { return m_options.out; }
    bool replacesPercentEscapes() const override { return false; }
    IconStyle iconStyle() const override { return m_options.style; }

  private:
    const GenerateOptions& m_options;
    Image m_image;
    int m_platformIndex = -1;
};

/// Opens nothing. The generator opens the folder once per platform; the command opens it once, after the last
/// platform.
class QuietWorkspace final : public Workspace {
  public:
    bool openURL(const QUrl& /*url*/) override { return true; }
};

/// The sizes of all icons that exist after the run. For a container it is the size of its largest picture.
std::vector<QSize> madeSizes(const GenerationPlan& plan, const GenerateOptions& options) {
    std::vector<QSize> sizes;
    for (const PlannedFile& file : plan.remainingFiles()) {
        const QString folder = appendingPathComponent(options.out, deletingLastPathComponent(file.path));
        const bool hasFolder = options.purpose != GeneratePurpose::Stream && FileItem::isFolder(folder);
        if (file.isFolderMade || hasFolder)
            sizes.push_back(file.pixelSize);
    }
    return sizes;
}

/// Tells the report of each file as if it were written.
void list(const GenerationPlan& plan, const QString& out, OutputPlace& place, GenerateReport& report) {
    for (const PlannedFile& file : plan.files()) {
        const QString path = appendingPathComponent(out, file.path);
        const QString icons = appendingPathComponent(out, Platforms::folder(file.idiom));
        const Result<Done> folder = file.isContainer ? Done{} : place.makeFolder(icons);
        if (file.fault)
            report.failed(path, *file.fault);
        else if (!folder)
            report.failed(path, folder.error());
        else if (const Result<Done> written = place.write(path, {}); !written)
            report.failed(path, written.error());
        else
            report.fileWritten({file.idiom, path, file.pixelSize, 0});
    }
}

void generate(OptionsInput input, const GenerationPlan& plan, const Result<Catalogue>& catalogue,
              OutputPlace& place, GenerateReport& report) {
    const GenerateOptions& options = input.options();
    const UnscaledScreen screen;
    QuietWorkspace workspace;
    const IconSetGenerator generator(
        input, {screen, workspace, &report, {options.background}, place, options.effort});
    Terminal::ProgressBar progress(static_cast<int>(plan.files().size()), options.tellsProgress());
    report.begin(progress);
    const PngStore::Keeping keeping = generator.keepPngs();
    for (const Platform platform : options.platforms) {
        input.choosePlatform(platform);
        generator.generateIconsWithImage(input.sourceImage(), catalogue);
    }
    report.end();
}

} // namespace

int runGenerate(const GenerateOptions& options) {
    if (options.timings)
        StageTimes::begin();
    Terminal::showDiagnosticLog(options.verbose);
    GenerateReport report(options);
    const CatalogueBundle bundle(options.catalogue);
    const Result<Catalogue> catalogue = Catalogue::load(bundle);
    if (!catalogue) {
        const QString path =
            options.catalogue.isEmpty() ? QLatin1String(Catalogue::resourceName) : options.catalogue;
        report.fail(path, catalogue.error());
        return report.finish();
    }
    GeneratePlace place(options);
    if (const Result<Done> checked = place.check(); !checked) {
        report.fail(options.out, checked.error());
        return report.finish();
    }
    const UnscaledScreen screen;
    const GenerationPlan plan(*catalogue, options.platforms, screen.scale());
    std::string failed;
    Result<LoadedPicture> picture = loadPicture(options.pictureFiles(), plan.renders(), failed);
    if (!picture) {
        report.fail(PathBytes::decoded(failed), picture.error());
        return report.finish();
    }
    // If the output folder can't be made, this reports it once and not for each file.
    if (const Result<Done> made = place.place().makeFolder(options.out); !made) {
        report.fail({}, made.error());
        return report.finish();
    }
    for (const Warning& warning : pictureWarnings(*picture, {madeSizes(plan, options), options.fit}))
        report.warn(warning.text());
    for (const QString& warning : SetWarnings::ofPlatforms(options, plan.remainingFiles()))
        report.warn(warning);

    if (options.purpose == GeneratePurpose::List)
        list(plan, options.out, place.place(), report);
    else
        generate(OptionsInput(options, std::move(picture->image)), plan, catalogue, place.place(), report);
    place.finish(report);
    if (!options.proof.isEmpty())
        GenerateProof::ofPlatforms(options, report);
    if (options.open)
        OutputTarget::open(options.out, report);
    return report.finish();
}

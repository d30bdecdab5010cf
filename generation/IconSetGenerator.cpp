#include "generation/IconSetGenerator.h"

#include "base/Log.h"
#include "files/FilePath.h"
#include "generation/GenerationPlan.h"
#include "generation/IconContainer.h"
#include "generation/OutputFolder.h"

#include <QUrl>

IconSetGenerator::IconSetGenerator(const GenerationInput& input, const Surroundings& surroundings)
    : m_input(input),
      m_surroundings(surroundings),
      m_renderer(input, surroundings.screen),
      m_pngs(surroundings.effort),
      m_writer(input, m_renderer, m_surroundings.ground, m_pngs, surroundings.place, surroundings.observer) {}

QString IconSetGenerator::appiconsetPathString(const QString& idiom) const {
    return OutputFolder::appiconsetPathString(m_input.outputPathString(), idiom);
}

void IconSetGenerator::tellFailure(const QString& path, const Error& error) const {
    if (m_surroundings.observer != nullptr)
        m_surroundings.observer->failed(path, error);
}

void IconSetGenerator::generateIconsWithImage(const Image& image,
                                              const Result<IconSizeCatalogue>& loaded) const {
    if (!loaded) {
        tellFailure(QLatin1String(IconSizeCatalogue::resourceName), loaded.error());
        if (loaded.error().code == ErrorCode::Malformed)
            return;
    }
    const PngStore::Keeping keeping(m_pngs);
    // If there is no array to read, there are no entries, but all other steps are done.
    const IconSizeCatalogue catalogue = loaded ? *loaded : IconSizeCatalogue();
    logLine(QStringLiteral("output url %1").arg(fileUrlText(m_input.outputPathString())));
    for (const Platform platform : Platforms::ofIndex(m_input.platformIndex())) {
        const QString idiom = Platforms::idiom(platform);
        outputImage(image, catalogue.dictionary(platform), catalogue.keys(platform), idiom);
        if (Platforms::hasContainer(platform))
            writeContainer(image, idiom);
    }
}

void IconSetGenerator::outputImage(const Image& image, const QVariantMap& InfoDict,
                                   const QStringList& keysArr, const QString& idiom) const {
    const int scale = m_surroundings.screen.scale();
    for (const PlannedIcon& icon : GenerationPlan::icons(InfoDict, keysArr, scale))
        m_writer.saveImage(image, icon.render.points, icon.name, idiom, icon.sizeFault);
    logLine(QStringLiteral("file://%1").arg(m_input.outputPathString()));
    m_surroundings.workspace.openURL(QUrl::fromLocalFile(m_input.outputPathString()));
}

void IconSetGenerator::writeContainer(const Image& image, const QString& idiom) const {
    const Result<QString> path = OutputFolder::containerPath(m_input, idiom);
    if (!path) {
        tellFailure(OutputFolder::containerBeside(appiconsetPathString(idiom)), path.error());
        return;
    }
    const Result<IconContainer::Written> written =
        IconContainer::write(image, m_renderer, *path, m_surroundings.ground, &m_pngs, m_surroundings.place);
    if (!written)
        tellFailure(*path, written.error());
    else if (m_surroundings.observer != nullptr)
        m_surroundings.observer->fileWritten({idiom, *path, written->largestSize, written->bytes});
}

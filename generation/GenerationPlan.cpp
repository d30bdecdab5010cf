#include "generation/GenerationPlan.h"

#include "files/FilePath.h"
#include "generation/IconContainer.h"
#include "generation/IconWriter.h"
#include "generation/OutputFolder.h"
#include "imaging/drawing/GraphicsContext.h"

#include <QDir>

#include <algorithm>
#include <set>

std::vector<PlannedIcon> GenerationPlan::icons(const QVariantMap& dictionary, const QStringList& keys,
                                               int scale) {
    std::vector<PlannedIcon> icons;
    icons.reserve(static_cast<std::size_t>(keys.size()));
    for (const QString& key : keys) {
        const QVariantMap entry = dictionary.value(key).toMap();
        const QSizeF pixels = IconSizeCatalogue::dimensions(entry);
        icons.push_back(
            {IconSizeCatalogue::name(entry), {pixels / scale, pixels}, IconSizeCatalogue::sizeFault(entry)});
    }
    return icons;
}

GenerationPlan::GenerationPlan(const IconSizeCatalogue& catalogue, std::span<const Platform> platforms,
                               int scale) {
    for (const Platform platform : platforms) {
        addIcons(catalogue, platform, scale);
        if (Platforms::hasContainer(platform))
            addContainer(catalogue, platform, scale);
    }
}

void GenerationPlan::addIcons(const IconSizeCatalogue& catalogue, Platform platform, int scale) {
    const QString idiom = Platforms::idiom(platform);
    const QString folder = Platforms::folder(idiom);
    for (const PlannedIcon& icon : icons(catalogue.dictionary(platform), catalogue.keys(platform), scale)) {
        const Result<QString> path = OutputFolder::pngIn(folder, icon.name);
        PlannedFile file;
        file.idiom = idiom;
        file.name = icon.name;
        file.renders = {icon.render};
        file.path = path ? *path : OutputFolder::shownPngPath(folder, icon.name);
        file.hasPath = path.operator bool();
        Result<QSize> pixelSize = GraphicsContext::pixelSize(icon.render.points, scale);
        if (!pixelSize)
            file.fault = IconWriter::fault(pixelSize.error(), icon.render.points, icon.sizeFault);
        else if (!path)
            file.fault = path.error();
        file.pixelSize = std::move(pixelSize).valueOr({});
        file.isFolderMade =
            !icon.name.contains(u'/') || deletingLastPathComponent(QDir::cleanPath(file.path)) == folder;
        m_files.push_back(std::move(file));
    }
}

void GenerationPlan::addContainer(const IconSizeCatalogue& catalogue, Platform platform, int scale) {
    const QString idiom = Platforms::idiom(platform);
    PlannedFile file;
    file.idiom = idiom;
    file.name = QLatin1String(OutputFolder::containerName);
    file.isContainer = true;
    file.path = OutputFolder::containerBeside(Platforms::folder(idiom));
    for (const QSizeF& points : IconContainer::renders())
        file.renders.push_back({points, points * scale});
    file.pixelSize = IconContainer::largestSize(scale);
    // The platform's icons make the folder, even if none of them can be written.
    file.isFolderMade = !catalogue.dictionary(platform).isEmpty();
    m_files.push_back(std::move(file));
}

std::vector<PlannedFile> GenerationPlan::remainingFiles() const {
    std::vector<PlannedFile> remaining;
    std::set<QString> paths;
    std::for_each(m_files.rbegin(), m_files.rend(), [&](const PlannedFile& file) {
        if (file.canBeWritten() && paths.insert(QDir::cleanPath(file.path)).second)
            remaining.push_back(file);
    });
    std::ranges::reverse(remaining);
    return remaining;
}

std::vector<QSizeF> GenerationPlan::renders() const {
    std::vector<QSizeF> sizes;
    for (const PlannedFile& file : m_files) {
        for (const PlannedRender& render : file.renders)
            sizes.push_back(render.pixels);
    }
    return sizes;
}

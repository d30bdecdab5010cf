#include "layouts/LayoutSources.h"

#include "generation/PictureWarnings.h"

#include <utility>

Result<SourcedPictures> loadedPictures(const LayoutSet& set, const PictureFit& fit,
                                       const LayoutSources& sources, QString& failed) {
    const ReducedCopies::Renders renders{set.renders(), fit};
    SourcedPictures result;
    const Result<LoadedPicture> main = sources.main.load(renders);
    if (!main) {
        failed = sources.main.path;
        return main.error();
    }
    result.pictures.main = main->image;
    result.warnings = pictureWarnings(*main, {set.sizes(), fit});
    if (main->isDrawing && sources.document)
        result.pictures.document = sources.document();
    const std::pair<const LayoutSources::Source&, std::optional<Image>&> others[] = {
        {sources.dark, result.pictures.dark},
        {sources.tinted, result.pictures.tinted},
        {sources.foreground, result.pictures.foreground},
        {sources.monochrome, result.pictures.monochrome}};
    for (const auto& [source, image] : others) {
        if (!source.load)
            continue;
        const Result<LoadedPicture> picture = source.load(renders);
        if (!picture) {
            failed = source.path;
            return picture.error();
        }
        for (const QString& warning : picture->warnings)
            result.warnings.push_back({QStringLiteral("%1: %2").arg(source.path, warning)});
        image = picture->image;
    }
    return result;
}

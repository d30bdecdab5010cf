#include "layouts/LayoutSources.h"

#include "generation/PictureWarnings.h"

#include <optional>
#include <set>

Result<SourcedPictures> loadedPictures(const LayoutSet& set, const PictureFit& fit,
                                       const LayoutSources& sources, QString& failed) {
    SourcedPictures result;
    struct Other {
        LayoutPicture picture;
        const LayoutSources::Source& source;
        std::optional<Image>& image;
    };
    const Other others[] = {{LayoutPicture::Dark, sources.dark, result.pictures.dark},
                            {LayoutPicture::Tinted, sources.tinted, result.pictures.tinted},
                            {LayoutPicture::Foreground, sources.foreground, result.pictures.foreground},
                            {LayoutPicture::Monochrome, sources.monochrome, result.pictures.monochrome}};
    std::set<LayoutPicture> given;
    for (const Other& other : others) {
        if (other.source.load)
            given.insert(other.picture);
    }
    const Result<LoadedPicture> main = sources.main.load({set.renders(LayoutPicture::Main, given), fit});
    if (!main) {
        failed = sources.main.path;
        return main.error();
    }
    result.pictures.main = main->image;
    result.warnings = pictureWarnings(*main, {set.sizes(), fit});
    if (main->isDrawing && sources.document)
        result.pictures.document = sources.document();
    for (const auto& [kind, source, image] : others) {
        if (!source.load)
            continue;
        const Result<LoadedPicture> picture = source.load({set.renders(kind, given), fit});
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

#include "mainwindow/IconSizes.h"

#include "generation/GenerationPlan.h"
#include "layouts/LayoutCatalogue.h"
#include "layouts/LayoutWriter.h"
#include "platform/services/Screen.h"

#include <algorithm>
#include <iterator>

namespace {

std::vector<QSizeF> sizesOfLayouts() {
    std::vector<QSizeF> sizes;
    for (const QString& name : LayoutCatalogue::names()) {
        if (const Result<Layout> layout = LayoutCatalogue::load(name))
            std::ranges::copy(LayoutWriter::renders(layout->files), std::back_inserter(sizes));
    }
    return sizes;
}

} // namespace

ReducedCopies::Renders allIconSizes(const Bundle& bundle, const Screen& screen) {
    const Result<IconSizeCatalogue> catalogue = IconSizeCatalogue::load(bundle);
    if (!catalogue)
        return {};
    std::vector<QSizeF> sizes = GenerationPlan(*catalogue, Platforms::all, screen.scale()).renders();
    static const std::vector<QSizeF> ofLayouts = sizesOfLayouts();
    std::ranges::copy(ofLayouts, std::back_inserter(sizes));
    return sizes;
}

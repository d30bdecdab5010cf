#pragma once

#include "base/Color.h"
#include "generation/GenerationObserver.h"
#include "layouts/Layout.h"
#include "project/proof/ProofSheet.h"

#include <span>
#include <vector>

/// Proof sheets of what was written. The pictures are read back from the files; texts are not escaped yet.
/// What can't be read is left out with a note.
namespace ProofSets {

/// The files of the platforms' plain tree, a group for each platform.
ProofSheet ofPlatforms(const std::vector<GenerationObserver::File>& files);

/// The files of layouts below the folder `out`, a group for each layout, and a part for each purpose.
/// `background` lies below adaptive layers where they are cut.
ProofSheet ofLayouts(const std::vector<GenerationObserver::File>& files, std::span<const Layout> layouts,
                     const QString& out, const Color& background);

/// The elements of an icns file that can be shown.
Result<ProofSheet> ofIcns(const QByteArray& file);

/// The shapes that systems cut a layout's file to, and its safe zone; the icon's other values stay.
void addShapes(const LayoutFile& file, const Color& background, ProofIcon& icon);

} // namespace ProofSets

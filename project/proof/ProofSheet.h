#pragma once

#include "base/Color.h"
#include "project/proof/ProofPictures.h"
#include "project/proof/ProofShapes.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

/// One icon on a proof sheet.
struct ProofIcon {
    QString name;
    QString detail; ///< one more line below the name; may be empty
    ProofPicture picture;
    std::vector<ProofCut> cuts;  ///< the shapes that systems cut it to
    double cutPart = 1;          ///< the part of the side that a cut is laid on
    double safePart = 0;         ///< the diameter of the safe zone as a part of the side; 0: there is none
    std::optional<Color> ground; ///< what lies below it where it is cut
};

/// The icons of one purpose.
struct ProofPart {
    QString title; ///< may be empty
    std::vector<ProofIcon> icons;
};

/// The icons of one platform, layout or file.
struct ProofGroup {
    QString title;
    std::vector<ProofPart> parts;
};

/// A page that shows a set of icons. All texts are safe to show.
struct ProofSheet {
    QString title;
    std::vector<ProofGroup> groups;
    QStringList notes; ///< sentences about what is left out

    bool isEmpty() const;
    /// For the line below the title: how many icons there are, and their sizes.
    QString facts() const;
    /// Sentences that tell how to read the sheet.
    QStringList legend() const;
};

/// How one icon is shown. The order is that on the sheet.
struct ProofView {
    enum class Kind { File, SafeZone, Cut, Enlarged };

    Kind kind = Kind::File;
    ProofCut cut = ProofCut::Circle; ///< of Kind::Cut
    QSize size = {};                 ///< on the sheet, in pixels
    QRect part = {};                 ///< the pixels of the icon that are shown
    QString caption = {};            ///< empty where the icon has one view
    bool hasGuides = false;          ///< the shapes and the safe zone are drawn over it, as lines
};

namespace ProofViews {

/// Cuts with a longer side than this are drawn as lines over the icon.
inline constexpr int mostCutPixels = 288;
/// Icons with a longer side than this are not enlarged.
inline constexpr int mostEnlargedPixels = 48;
inline constexpr int enlargement = 8;

std::vector<ProofView> of(const ProofIcon& icon);

} // namespace ProofViews

#pragma once

#include "project/proof/ProofSheet.h"
#include "project/proof/ProofText.h"

#include <QRect>

#include <vector>

/// A view of an icon at its place on the sheet.
struct PlacedView {
    ProofView view;
    QPoint place;   ///< of its upper left corner, inside of its ground
    QPoint caption; ///< the baseline of its caption, inside of its ground
};

/// A part of the sheet from its left to its right edge: a heading, or an icon with its grounds.
struct ProofBand {
    int top = 0;
    int height = 0;
    std::vector<ProofTextLine> text; ///< inside of textArea
    QRect textArea;                  ///< on the sheet
    bool hasLine = false;            ///< a line above it
    const ProofIcon* icon = nullptr; ///< null for a heading
    QRect lightGround;               ///< on the sheet
    QRect darkGround;
    std::vector<PlacedView> views; ///< the same on both grounds
};

/// Where all things of a sheet are, from the top to the bottom.
struct ProofLayout {
    QSize size;
    std::vector<ProofBand> bands;
};

/// The layout of `sheet`, which must outlive it. TooLarge where it has more pixels than a picture may have.
Result<ProofLayout> laidOut(const ProofSheet& sheet);

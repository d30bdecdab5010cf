#include "project/proof/ProofSheet.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace {

/// The square in the middle of a picture that a cut is laid on. Its margin is a whole number of pixels.
QRect middle(const QSize& size, double part) {
    const auto margin = [part](int side) { return static_cast<int>(std::lround(side * (1 - part) / 2)); };
    const int x = margin(size.width());
    const int y = margin(size.height());
    return {x, y, size.width() - 2 * x, size.height() - 2 * y};
}

template <typename Visit>
void forEach(const ProofSheet& sheet, Visit visit) {
    for (const ProofGroup& group : sheet.groups) {
        for (const ProofPart& part : group.parts) {
            for (const ProofIcon& icon : part.icons)
                visit(icon);
        }
    }
}

} // namespace

bool ProofSheet::isEmpty() const {
    return std::ranges::all_of(groups, [](const ProofGroup& group) {
        return std::ranges::all_of(group.parts, [](const ProofPart& part) { return part.icons.empty(); });
    });
}

QString ProofSheet::facts() const {
    qsizetype count = 0;
    int least = std::numeric_limits<int>::max();
    int most = 0;
    forEach(*this, [&](const ProofIcon& icon) {
        const QSize size = icon.picture.size();
        least = std::min(least, std::max(size.width(), size.height()));
        most = std::max({most, size.width(), size.height()});
        ++count;
    });
    const QString icons = count == 1 ? QStringLiteral("1 icon") : QStringLiteral("%1 icons").arg(count);
    return least >= most ? QStringLiteral("%1, %2 pixels").arg(icons).arg(most)
                         : QStringLiteral("%1, from %2 to %3 pixels").arg(icons).arg(least).arg(most);
}

QStringList ProofSheet::legend() const {
    bool hasEnlarged = false;
    bool hasLines = false;
    bool hasSafeZone = false;
    std::set<ProofCut> cuts;
    forEach(*this, [&](const ProofIcon& icon) {
        cuts.insert(icon.cuts.begin(), icon.cuts.end());
        hasSafeZone = hasSafeZone || icon.safePart > 0;
        for (const ProofView& view : ProofViews::of(icon)) {
            hasEnlarged = hasEnlarged || view.kind == ProofView::Kind::Enlarged;
            hasLines = hasLines || (view.hasGuides && view.kind == ProofView::Kind::File);
        }
    });
    QStringList remarks{QStringLiteral(
        "Each icon has its true size, a pixel of its file for a pixel here, on a light and on a "
        "dark ground.")};
    if (hasEnlarged)
        remarks << QStringLiteral(
                       "Icons of up to %1 pixels are also shown %2 times as large, pixel by pixel.")
                       .arg(ProofViews::mostEnlargedPixels)
                       .arg(ProofViews::enlargement);
    if (cuts.contains(ProofCut::Squircle))
        remarks << QStringLiteral("Squircle: as iPhone and iPad cut icons.");
    if (cuts.contains(ProofCut::Circle))
        remarks << QStringLiteral("Circle: as Apple Watch and many Android devices cut icons.");
    if (cuts.contains(ProofCut::Teardrop))
        remarks << QStringLiteral("Rounded square and teardrop: as other Android devices cut icons.");
    if (hasSafeZone)
        remarks << QStringLiteral("Safe zone: what lies inside of the ring is never cut.");
    if (hasLines)
        remarks << QStringLiteral(
            "Over large icons the shapes are drawn as lines, which are not part of the file.");
    return remarks;
}

std::vector<ProofView> ProofViews::of(const ProofIcon& icon) {
    const QSize size = icon.picture.size();
    const int longest = std::max(size.width(), size.height());
    const QRect whole(QPoint(0, 0), size);
    const bool isLarge = longest * icon.cutPart > mostCutPixels;
    const bool hasSafeZone = icon.safePart > 0;
    std::vector<ProofView> views;
    views.push_back(
        {.size = size, .part = whole, .hasGuides = isLarge && (hasSafeZone || !icon.cuts.empty())});
    if (!isLarge && hasSafeZone)
        views.push_back({.kind = ProofView::Kind::SafeZone,
                         .size = size,
                         .part = whole,
                         .caption = QStringLiteral("safe zone"),
                         .hasGuides = true});
    for (const ProofCut cut : icon.cuts) {
        if (isLarge)
            break;
        const QRect part = middle(size, icon.cutPart);
        views.push_back({.kind = ProofView::Kind::Cut,
                         .cut = cut,
                         .size = part.size(),
                         .part = part,
                         .caption = ProofShapes::name(cut)});
    }
    if (longest <= mostEnlargedPixels)
        views.push_back({.kind = ProofView::Kind::Enlarged,
                         .size = size * enlargement,
                         .part = whole,
                         .caption = QStringLiteral("%1 times as large").arg(enlargement)});
    if (views.size() > 1)
        views.front().caption = QStringLiteral("file");
    return views;
}

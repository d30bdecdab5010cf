#include "project/proof/ProofLayout.h"

#include "imaging/image/PictureReader.h"

#include <algorithm>

namespace {

constexpr int margin = 48;
constexpr int labelWidth = 220;
constexpr int labelGap = 24;
/// The least width of a ground that stands beside the other.
constexpr int halfGround = 552;
constexpr int groundPadding = 20;
constexpr int viewGap = 16;
constexpr int captionHeight = 20;
/// A letter of a caption is no wider on average.
constexpr int captionLetter = 7;
constexpr int rowPadding = 20;
constexpr int lineHeight = 18;
/// How many letters of these fonts fit beside the grounds.
constexpr int fixedCells = 29;
constexpr int plainCells = 31;
const QString ink = QStringLiteral("#1b1b1a");
const QString softInk = QStringLiteral("#62625e");

using Font = ProofTextLine::Font;

/// Places views in rows, from the left to the right, on one bottom line in each row.
class Flow {
  public:
    explicit Flow(int width) : m_width(width) {}

    void add(const ProofView& view) {
        const int width = std::max(view.size.width(), captionLetter * static_cast<int>(view.caption.size()));
        if (!m_row.empty() && m_x + width > m_width)
            finishRow();
        m_row.push_back({view, {groundPadding + m_x, 0}, {}});
        m_x += width + viewGap;
        m_rowHeight = std::max(m_rowHeight, view.size.height());
        m_hasCaption = m_hasCaption || !view.caption.isEmpty();
    }

    /// The height of the ground around all views.
    int finish() {
        finishRow();
        return m_y - viewGap + 2 * groundPadding;
    }

    std::vector<PlacedView> placed;

  private:
    void finishRow() {
        const int bottom = groundPadding + m_y + m_rowHeight;
        for (PlacedView& view : m_row) {
            view.place.setY(bottom - view.view.size.height());
            view.caption = {view.place.x(), bottom + 15};
            placed.push_back(view);
        }
        m_y += m_rowHeight + (m_hasCaption ? captionHeight : 0) + viewGap;
        m_row.clear();
        m_x = 0;
        m_rowHeight = 0;
        m_hasCaption = false;
    }

    int m_width;
    int m_x = 0;
    int m_y = 0;
    int m_rowHeight = 0;
    bool m_hasCaption = false;
    std::vector<PlacedView> m_row;
};

int widestView(const ProofIcon& icon) {
    const std::vector<ProofView> views = ProofViews::of(icon);
    const auto width = [](const ProofView& view) { return view.size.width(); };
    return std::ranges::max(views, {}, width).size.width();
}

class Layouting {
  public:
    explicit Layouting(const ProofSheet& sheet) : m_sheet(sheet) {
        int widest = 2 * halfGround;
        forEachIcon(
            [&](const ProofIcon& icon) { widest = std::max(widest, widestView(icon) + 2 * groundPadding); });
        m_groundWidth = widest + widest % 2;
        m_width = margin + labelWidth + labelGap + m_groundWidth + margin;
    }

    ProofLayout made() {
        m_y = margin;
        addHeading({{{0, 13}, QStringLiteral("Icon proof"), softInk, 13},
                    {{0, 56}, m_sheet.title, ink, 36, Font::Bold},
                    {{0, 86}, m_sheet.facts(), softInk, 15}},
                   96);
        for (const ProofGroup& group : m_sheet.groups) {
            addHeading({{{0, 72}, group.title, ink, 22, Font::Bold}}, 88);
            for (const ProofPart& part : group.parts) {
                if (!part.title.isEmpty())
                    addHeading({{{0, 36}, part.title, ink, 16, Font::Bold}}, 50);
                for (const ProofIcon& icon : part.icons)
                    add(icon);
            }
        }
        addFooter();
        return {{m_width, m_y + margin}, std::move(m_bands)};
    }

  private:
    template <typename Visit>
    void forEachIcon(Visit visit) const {
        for (const ProofGroup& group : m_sheet.groups) {
            for (const ProofPart& part : group.parts) {
                for (const ProofIcon& icon : part.icons)
                    visit(icon);
            }
        }
    }

    void addHeading(std::vector<ProofTextLine> lines, int height) {
        ProofBand band;
        band.top = m_y;
        band.height = height;
        band.text = std::move(lines);
        band.textArea = QRect(margin, m_y, m_width - 2 * margin, height);
        m_y += height;
        m_bands.push_back(std::move(band));
    }

    /// The lines beside an icon's grounds, and their height.
    static std::pair<std::vector<ProofTextLine>, int> label(const ProofIcon& icon) {
        std::vector<ProofTextLine> lines;
        int y = rowPadding + 14;
        const auto add = [&](const QString& text, const QString& color, int size, Font font) {
            lines.push_back({{0, y}, text, color, size, font});
            y += lineHeight;
        };
        for (const QString& line : wrappedText(icon.name, fixedCells))
            add(line, ink, 12, Font::Fixed);
        y += 2;
        const QSize size = icon.picture.size();
        add(QStringLiteral("%1 × %2 px").arg(size.width()).arg(size.height()), softInk, 13, Font::Plain);
        for (const QString& line : wrappedText(icon.detail, plainCells))
            add(line, softInk, 12, Font::Plain);
        return {std::move(lines), y};
    }

    void add(const ProofIcon& icon) {
        const int left = margin + labelWidth + labelGap;
        const bool isWide = widestView(icon) > halfGround - 2 * groundPadding;
        const int ground = isWide ? m_groundWidth : m_groundWidth / 2;
        Flow flow(ground - 2 * groundPadding);
        for (const ProofView& view : ProofViews::of(icon))
            flow.add(view);
        const int height = flow.finish();
        auto [lines, labelHeight] = label(icon);
        ProofBand band;
        band.top = m_y;
        band.hasLine = true;
        band.icon = &icon;
        band.views = std::move(flow.placed);
        band.lightGround = QRect(left, m_y + rowPadding, ground, height);
        band.darkGround = band.lightGround.translated(isWide ? QPoint(0, height) : QPoint(ground, 0));
        band.height = std::max(labelHeight, (isWide ? 2 : 1) * height + 2 * rowPadding);
        band.text = std::move(lines);
        band.textArea = QRect(margin, m_y, labelWidth, band.height);
        m_y += band.height;
        m_bands.push_back(std::move(band));
    }

    void addFooter() {
        std::vector<ProofTextLine> lines;
        int y = 56;
        const auto add = [&](const QString& text, const QString& color, Font font) {
            constexpr int footerCells = 150;
            for (const QString& line : wrappedText(text, footerCells)) {
                lines.push_back({{0, y}, line, color, 13, font});
                y += lineHeight + 4;
            }
        };
        for (const QString& note : m_sheet.notes)
            add(note, ink, Font::Bold);
        for (const QString& remark : m_sheet.legend())
            add(remark, softInk, Font::Plain);
        addHeading(std::move(lines), y);
    }

    const ProofSheet& m_sheet;
    int m_groundWidth = 0;
    int m_width = 0;
    int m_y = 0;
    std::vector<ProofBand> m_bands;
};

} // namespace

Result<ProofLayout> laidOut(const ProofSheet& sheet) {
    ProofLayout layout = Layouting(sheet).made();
    if (const Result<Done> fits = PictureReader::checkSize(layout.size.width(), layout.size.height()); !fits)
        return about(QStringLiteral("the proof sheet"), fits.error());
    return layout;
}

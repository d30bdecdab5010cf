#include "imaging/formats/ColorTable.h"

#include "base/ShortMemory.h"
#include "imaging/pixels/Premultiplication.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <unordered_map>

namespace {

using Rgb = IndexedPicture::Rgb;

constexpr std::size_t largestTable = 255;
constexpr std::uint8_t halfCoverage = 128;

bool isOpaque(const uchar* pixel) {
    return pixel[3] >= halfCoverage;
}

Rgb colorOf(const uchar* pixel) {
    return {pixel[0], pixel[1], pixel[2]};
}

template <typename Visit>
void forEachPixel(const QImage& straight, Visit visit) {
    for (int y = 0; y < straight.height(); ++y) {
        const uchar* pixel = straight.constScanLine(y);
        for (int x = 0; x < straight.width(); ++x, pixel += 4)
            visit(pixel);
    }
}

/// All colours of opaque pixels, in order; no value where there are more than a table holds.
std::optional<std::vector<Rgb>> fewColors(const QImage& straight) {
    std::map<Rgb, bool> seen;
    forEachPixel(straight, [&](const uchar* pixel) {
        if (seen.size() <= largestTable && isOpaque(pixel))
            seen.emplace(colorOf(pixel), true);
    });
    if (seen.size() > largestTable)
        return std::nullopt;
    std::vector<Rgb> colors;
    colors.reserve(seen.size());
    for (const auto& [color, isSeen] : seen)
        colors.push_back(color);
    return colors;
}

/// The pixels of one cell of a coarse grid of colours.
struct Cell {
    std::array<double, 3> mean{};
    double count = 0;
};

/// The cells with pixels, in a grid of `bits` bits a channel; no value where there are more than `most`.
std::optional<std::vector<Cell>> cellsOf(const QImage& straight, int bits, std::size_t most) {
    const int dropped = 8 - bits;
    // Not QHash: it ends the program where memory is short.
    std::unordered_map<quint32, std::size_t> places;
    places.reserve(most + 1);
    std::vector<Cell> cells;
    forEachPixel(straight, [&](const uchar* pixel) {
        if (!isOpaque(pixel) || cells.size() > most)
            return;
        const auto at = static_cast<quint32>((pixel[0] >> dropped) << (2 * bits) |
                                             (pixel[1] >> dropped) << bits | pixel[2] >> dropped);
        const auto [place, isNew] = places.try_emplace(at, cells.size());
        if (isNew)
            cells.emplace_back();
        Cell& cell = cells[place->second];
        ++cell.count;
        for (std::size_t channel = 0; channel < 3; ++channel)
            cell.mean[channel] += pixel[channel];
    });
    if (cells.size() > most)
        return std::nullopt;
    for (Cell& cell : cells) {
        for (double& channel : cell.mean)
            channel /= cell.count;
    }
    return cells;
}

/// The cells of the finest grid that does not have too many of them. A picture of few colours keeps them
/// apart.
std::vector<Cell> histogram(const QImage& straight) {
    constexpr std::size_t most = 1 << 15;
    constexpr int coarsest = 5;
    for (int bits = 8; bits > coarsest; --bits) {
        if (std::optional<std::vector<Cell>> cells = cellsOf(straight, bits, most))
            return std::move(*cells);
    }
    return *cellsOf(straight, coarsest, most);
}

/// A range of cells that one colour stands for.
struct ColorBox {
    std::size_t first;
    std::size_t last;        ///< one after the last
    std::size_t channel = 0; ///< the one with the largest variance
    double variance = 0;     ///< of that channel, over all pixels
    std::array<double, 3> mean{};
};

ColorBox boxOf(const std::vector<Cell>& cells, std::size_t first, std::size_t last) {
    ColorBox box{first, last};
    double count = 0;
    std::array<double, 3> squares{};
    for (std::size_t i = first; i < last; ++i) {
        const Cell& cell = cells[i];
        count += cell.count;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            box.mean[channel] += cell.count * cell.mean[channel];
            squares[channel] += cell.count * cell.mean[channel] * cell.mean[channel];
        }
    }
    for (std::size_t channel = 0; channel < 3; ++channel) {
        box.mean[channel] /= count;
        const double variance = squares[channel] - count * box.mean[channel] * box.mean[channel];
        if (variance > box.variance) {
            box.variance = variance;
            box.channel = channel;
        }
    }
    return box;
}

/// Splits the box with the largest variance at its mean, again and again until there are enough boxes.
std::vector<ColorBox> medianCut(std::vector<Cell>& cells) {
    std::vector<ColorBox> boxes{boxOf(cells, 0, cells.size())};
    while (boxes.size() < largestTable) {
        const auto widest = std::ranges::max_element(boxes, {}, &ColorBox::variance);
        const ColorBox box = *widest;
        if (box.variance <= 0)
            break;
        const auto begin = cells.begin();
        const auto middle = std::partition(
            begin + static_cast<std::ptrdiff_t>(box.first), begin + static_cast<std::ptrdiff_t>(box.last),
            [&](const Cell& cell) { return cell.mean[box.channel] <= box.mean[box.channel]; });
        const auto at = static_cast<std::size_t>(middle - begin);
        if (at == box.first || at == box.last) {
            widest->variance = 0;
            continue;
        }
        *widest = boxOf(cells, box.first, at);
        boxes.push_back(boxOf(cells, at, box.last));
    }
    return boxes;
}

using Mean = std::array<double, 3>;

std::size_t nearest(const std::vector<Mean>& table, const Mean& color) {
    std::size_t best = 0;
    double least = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i < table.size(); ++i) {
        const double red = table[i][0] - color[0];
        const double green = table[i][1] - color[1];
        const double blue = table[i][2] - color[2];
        const double distance = red * red + green * green + blue * blue;
        if (distance < least) {
            least = distance;
            best = i;
        }
    }
    return best;
}

/// Moves each colour to the mean of the cells that are nearest to it, in several rounds.
void refine(std::vector<Mean>& table, const std::vector<Cell>& cells) {
    constexpr int rounds = 4;
    for (int round = 0; round < rounds; ++round) {
        std::vector<Cell> sums(table.size());
        for (const Cell& cell : cells) {
            Cell& sum = sums[nearest(table, cell.mean)];
            sum.count += cell.count;
            for (std::size_t channel = 0; channel < 3; ++channel)
                sum.mean[channel] += cell.count * cell.mean[channel];
        }
        for (std::size_t i = 0; i < table.size(); ++i) {
            for (std::size_t channel = 0; channel < 3 && sums[i].count > 0; ++channel)
                table[i][channel] = sums[i].mean[channel] / sums[i].count;
        }
    }
}

std::vector<Rgb> bestColors(const QImage& straight) {
    std::vector<Cell> cells = histogram(straight);
    std::vector<Mean> table;
    for (const ColorBox& box : medianCut(cells))
        table.push_back(box.mean);
    refine(table, cells);
    std::vector<Rgb> colors;
    for (const Mean& mean : table) {
        Rgb color{};
        for (std::size_t channel = 0; channel < 3; ++channel)
            color[channel] = static_cast<std::uint8_t>(std::lround(mean[channel]));
        colors.push_back(color);
    }
    return colors;
}

/// Chooses colours row by row, and spreads the error of each choice over the neighbours.
class Diffusion {
  public:
    Diffusion(const std::vector<Rgb>& colors, int width)
        : m_below(static_cast<std::size_t>(width) + 2), m_row(m_below.size()) {
        for (const Rgb& color : colors)
            m_table.push_back({static_cast<double>(color[0]), static_cast<double>(color[1]),
                               static_cast<double>(color[2])});
    }

    void beginRow() {
        m_row.swap(m_below);
        std::ranges::fill(m_below, Mean{});
    }

    std::size_t choose(const uchar* pixel, int x) {
        // The first place of a row is for a pixel left of the picture.
        const auto at = static_cast<std::size_t>(x) + 1;
        Mean wanted{};
        std::uint32_t key = 0;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const auto whole = std::lround(std::clamp(pixel[channel] + m_row[at][channel], 0.0, 255.0));
            wanted[channel] = static_cast<double>(whole);
            key = key << 8U | static_cast<std::uint32_t>(whole);
        }
        Nearest& known = m_known[(key ^ key >> 12U) % m_known.size()];
        if (known.color != key)
            known = {key, static_cast<std::uint32_t>(nearest(m_table, wanted))};
        const std::size_t chosen = known.index;
        for (std::size_t channel = 0; channel < 3; ++channel) {
            const double lost = (wanted[channel] - m_table[chosen][channel]) / 16;
            m_row[at + 1][channel] += 7 * lost;
            m_below[at - 1][channel] += 3 * lost;
            m_below[at][channel] += 5 * lost;
            m_below[at + 1][channel] += lost;
        }
        return chosen;
    }

  private:
    /// The place in the table that is nearest to a colour.
    struct Nearest {
        std::uint32_t color = 0xffffffff; ///< no colour: they have 24 bits
        std::uint32_t index = 0;
    };

    std::vector<Mean> m_table;
    /// For the colours that were wanted last. Graphics want the same ones again.
    std::array<Nearest, 4096> m_known{};
    std::vector<Mean> m_below;
    std::vector<Mean> m_row;
};

/// As `indexedPicture`, of a raster with straight colours.
IndexedPicture indexed(const QImage& straight) {
    IndexedPicture picture;
    forEachPixel(straight, [&](const uchar* pixel) {
        picture.hasTransparency = picture.hasTransparency || !isOpaque(pixel);
    });
    const std::optional<std::vector<Rgb>> few = fewColors(straight);
    const std::vector<Rgb> colors = few ? *few : bestColors(straight);
    const std::size_t first = picture.hasTransparency ? 1 : 0;
    picture.colors.assign(first, Rgb{});
    picture.colors.insert(picture.colors.end(), colors.begin(), colors.end());
    picture.indexes.reserve(static_cast<std::size_t>(straight.width()) *
                            static_cast<std::size_t>(straight.height()));
    std::optional<Diffusion> diffusion;
    if (!few)
        diffusion.emplace(colors, straight.width());
    for (int y = 0; y < straight.height(); ++y) {
        if (diffusion)
            diffusion->beginRow();
        const uchar* pixel = straight.constScanLine(y);
        for (int x = 0; x < straight.width(); ++x, pixel += 4) {
            std::size_t index = 0;
            if (isOpaque(pixel) && !diffusion)
                index = first + static_cast<std::size_t>(std::ranges::lower_bound(colors, colorOf(pixel)) -
                                                         colors.begin());
            else if (isOpaque(pixel))
                index = first + diffusion->choose(pixel, x);
            picture.indexes.push_back(static_cast<std::uint8_t>(index));
        }
    }
    return picture;
}

} // namespace

Result<IndexedPicture> indexedPicture(const QImage& raster) {
    const Result<QImage> straight = straightRaster(raster);
    if (!straight)
        return straight.error();
    return unlessMemoryIsShort([&] { return indexed(*straight); });
}

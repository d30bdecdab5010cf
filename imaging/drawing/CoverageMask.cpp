#include "imaging/drawing/CoverageMask.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// One straight piece of a boundary inside one row of pixels: it spans `height` of the row, its x runs from
/// `from` to `to`.
struct Piece {
    double height;
    double from;
    double to;
};

/// The integral of clamp(t, 0, 1) from minus infinity to t.
double clampIntegral(double t) {
    if (t <= 0)
        return 0;
    return t >= 1 ? t - 0.5 : t * t / 2;
}

/// The area between the boundary pieces and the left edge of pixel x, inside that pixel.
double areaLeftOf(const std::vector<Piece>& pieces, int x) {
    double area = 0;
    for (const Piece& piece : pieces) {
        const double from = piece.from - x;
        const double to = piece.to - x;
        const double run = to - from;
        const double mean = std::abs(run) < 1e-9 ? std::clamp((from + to) / 2, 0.0, 1.0)
                                                 : (clampIntegral(to) - clampIntegral(from)) / run;
        area += piece.height * mean;
    }
    return area;
}

struct Extent {
    double minimum = std::numeric_limits<double>::max();
    double maximum = std::numeric_limits<double>::lowest();

    void add(const Piece& piece) {
        minimum = std::min({minimum, piece.from, piece.to});
        maximum = std::max({maximum, piece.from, piece.to});
    }
};

/// An edge of the outline that runs downward from `top` to `bottom`.
struct Edge {
    QPointF top;
    QPointF bottom;
    bool isLeft;
};

std::vector<Edge> edgesOf(std::span<const QPointF> outline) {
    double area = 0;
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const QPointF& a = outline[i];
        const QPointF& b = outline[(i + 1) % outline.size()];
        area += a.x() * b.y() - b.x() * a.y();
    }
    std::vector<Edge> edges;
    edges.reserve(outline.size());
    for (std::size_t i = 0; i < outline.size(); ++i) {
        const QPointF& a = outline[i];
        const QPointF& b = outline[(i + 1) % outline.size()];
        if (a.y() == b.y())
            continue;
        // With y downward and a positive area the boundary runs down on the right side.
        const bool down = a.y() < b.y();
        edges.push_back({down ? a : b, down ? b : a, down != (area > 0)});
    }
    return edges;
}

constexpr double wholeRow = 1 - 1e-12;

/// The polygon's two sides within one row of pixels.
struct RowSides {
    std::vector<Piece> left;
    std::vector<Piece> right;
    Extent leftExtent;
    Extent rightExtent;
    double covered = 0; ///< the part of the row's height that the shape spans

    /// Collects the pieces of `edges` in row `y`. The edges are sorted by their tops.
    void collect(std::span<const Edge> edges, int y) {
        left.clear();
        right.clear();
        leftExtent = {};
        rightExtent = {};
        covered = 0;
        for (std::size_t i = 0; i < edges.size() && edges[i].top.y() < y + 1; ++i) {
            const Edge& edge = edges[i];
            const double from = std::max(edge.top.y(), static_cast<double>(y));
            const double to = std::min(edge.bottom.y(), static_cast<double>(y + 1));
            if (to <= from)
                continue;
            const double slope = (edge.bottom.x() - edge.top.x()) / (edge.bottom.y() - edge.top.y());
            const Piece piece{to - from, edge.top.x() + (from - edge.top.y()) * slope,
                              edge.top.x() + (to - edge.top.y()) * slope};
            (edge.isLeft ? left : right).push_back(piece);
            (edge.isLeft ? leftExtent : rightExtent).add(piece);
            if (edge.isLeft)
                covered += piece.height;
        }
    }
};

} // namespace

CoverageMask CoverageMask::ofConvexPolygon(std::span<const QPointF> outline, int width, int height,
                                           bool symmetric) {
    CoverageMask mask;
    mask.m_rows.resize(static_cast<std::size_t>(height));
    if (outline.size() < 3)
        return mask;
    std::vector<Edge> edges = edgesOf(outline);
    std::ranges::sort(edges, {}, [](const Edge& edge) { return edge.top.y(); });

    RowSides sides;
    std::size_t firstEdge = 0;
    const int computedRows = symmetric ? (height + 1) / 2 : height;
    for (int y = 0; y < computedRows; ++y) {
        Row& row = mask.m_rows[static_cast<std::size_t>(y)];
        row.values = mask.m_values.size();
        sides.collect(std::span(edges).subspan(firstEdge), y);
        while (firstEdge < edges.size() && edges[firstEdge].bottom.y() <= y + 1)
            ++firstEdge;
        if (sides.left.empty() || sides.right.empty())
            continue;
        const auto pixel = [width](double x) {
            return static_cast<int>(std::clamp(x, 0.0, static_cast<double>(width)));
        };
        row.begin = pixel(std::floor(sides.leftExtent.minimum));
        row.end = symmetric ? width - row.begin : pixel(std::ceil(sides.rightExtent.maximum));
        if (row.end <= row.begin) {
            row = Row{.values = row.values};
            continue;
        }
        row.fullBegin = pixel(std::ceil(sides.leftExtent.maximum));
        row.fullEnd = symmetric ? width - row.fullBegin : pixel(std::floor(sides.rightExtent.minimum));
        if (sides.covered < wholeRow || row.fullEnd <= row.fullBegin)
            row.fullBegin = row.fullEnd = row.end;
        for (int x = row.begin; x < row.end; ++x) {
            if (x == row.fullBegin)
                x = row.fullEnd;
            if (x >= row.end)
                break;
            if (symmetric && 2 * x >= width) {
                mask.m_values.push_back(mask.at(row, width - 1 - x));
                continue;
            }
            mask.m_values.push_back(
                std::clamp(areaLeftOf(sides.right, x) - areaLeftOf(sides.left, x), 0.0, 1.0));
        }
    }
    for (int y = computedRows; y < height; ++y)
        mask.m_rows[static_cast<std::size_t>(y)] = mask.m_rows[static_cast<std::size_t>(height - 1 - y)];
    return mask;
}

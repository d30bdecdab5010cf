#pragma once

#include <QPointF>

#include <span>
#include <vector>

/// The part of each pixel of a raster that a convex shape covers, as exact areas. They are stored row by row,
/// without the fully covered middle of a row. For this room alone: making one may throw std::bad_alloc, which
/// GraphicsContext turns into an error.
class CoverageMask {
  public:
    /// One row of pixels. Outside [begin, end) nothing is covered, inside [fullBegin, fullEnd) everything.
    struct Row {
        int begin = 0;
        int fullBegin = 0;
        int fullEnd = 0;
        int end = 0;
        std::size_t values = 0; ///< where this row's partial coverages start
    };

    /// The mask of the convex polygon `outline` (any orientation, pixel coordinates, y downward) over a
    /// raster of width × height pixels. With `symmetric` the polygon is its own mirror image about both
    /// middle axes of the raster, and the mask is made symmetric to the last bit. An outline of fewer than
    /// three points covers nothing.
    static CoverageMask ofConvexPolygon(std::span<const QPointF> outline, int width, int height,
                                        bool symmetric);

    const Row& row(int y) const { return m_rows[static_cast<std::size_t>(y)]; }

    /// The covered part of pixel (x, y), from 0 to 1.
    double at(int x, int y) const { return at(row(y), x); }
    double at(const Row& row, int x) const {
        if (x < row.begin || x >= row.end)
            return 0;
        if (x >= row.fullBegin && x < row.fullEnd)
            return 1;
        const int index = x < row.fullBegin ? x - row.begin : x - row.begin - (row.fullEnd - row.fullBegin);
        return m_values[row.values + static_cast<std::size_t>(index)];
    }

  private:
    std::vector<Row> m_rows;
    std::vector<double> m_values;
};

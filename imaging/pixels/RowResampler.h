#pragma once

#include "imaging/pixels/ResamplerWeights.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

namespace resampler {

/// What one target row takes from the source: two pointers to rows and two weights a pair.
struct RowTaps {
    const std::uint8_t* const* rows;
    const std::int16_t* weights;
    int pairs;
    std::size_t width; ///< of the source, in pixels
};

} // namespace resampler

/// `resampled`, one target row after another. May throw std::bad_alloc where it is made.
class RowResampler {
  public:
    RowResampler(const AxisMapping& x, const AxisMapping& y);

    /// The first source row that target row `y` takes anything from, and how many, from the source's top,
    /// must be there for it.
    int firstRow(int y) const { return m_columns.start(y); }
    int rowsNeeded(int y) const;

    /// Target row `y`; `rowAt` gives the pixels of a source row.
    template <typename RowAt>
    void make(int y, const RowAt& rowAt, std::uint8_t* out);

    void resample(const QImage& source, QImage& target);

  private:
    /// That of the longest vectors: none is then divided between two lines of the cache.
    static constexpr std::align_val_t alignment{64};
    struct FreeAligned {
        void operator()(std::int16_t* samples) const { ::operator delete(samples, alignment); }
    };

    ResamplerWeights m_columns;
    ResamplerWeights m_rows;
    std::size_t m_sourceWidth;
    int m_sourceHeight;
    int m_targetWidth;
    int m_targetHeight;
    std::vector<const std::uint8_t*> m_taps;
    std::unique_ptr<std::int16_t[], FreeAligned> m_between; ///< a row between the two filters
};

/// The same bytes from a source that comes row by row from its top, and of which only the rows that later
/// results need are kept. For each row: fill `nextRow`, then `addRow`, then take the results there are.
class StreamResampler {
  public:
    /// May throw std::bad_alloc.
    StreamResampler(const AxisMapping& x, const AxisMapping& y);

    /// Where the next row belongs: 4 bytes for each source pixel.
    std::uint8_t* nextRow() { return row(m_come); }
    void addRow() { ++m_come; }

    bool hasResult() const;
    /// The next target row, 4 bytes for each pixel.
    void takeResult(std::uint8_t* out);

  private:
    std::uint8_t* row(int y);

    RowResampler m_rows;
    int m_targetHeight;
    int m_come = 0;
    int m_made = 0;
    int m_capacity = 1;
    std::size_t m_rowBytes = 0;
    std::vector<std::uint8_t> m_ring;
};

#pragma once

#include "imaging/pixels/ResamplerWeights.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <vector>

namespace resampler {

/// The source rows and weights of one target row. A pair has two pointers to rows and two weights.
struct RowTaps {
    const std::uint8_t* const* rows;
    const std::int16_t* weights;
    int pairs;
    std::size_t width; ///< of the source, in pixels
};

} // namespace resampler

/// Does the work of `resampled`, one target row after another. For this room alone: the constructor may throw
/// std::bad_alloc, which `resampled` and ReducingStream turn into an error.
class RowResampler {
  public:
    RowResampler(const AxisMapping& x, const AxisMapping& y);

    /// `firstRow` is the first source row that target row `y` reads. `rowsNeeded` is how many rows it needs,
    /// counted from the source's top.
    int firstRow(int y) const { return m_columns.start(y); }
    int rowsNeeded(int y) const;

    /// Makes target row `y`; `rowAt` gives the pixels of a source row.
    template <typename RowAt>
    void make(int y, const RowAt& rowAt, std::uint8_t* out);

    void resample(const QImage& source, QImage& target);

  private:
    /// The longest vectors have 64 bytes. Aligned so, no vector spans two cache lines.
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

/// Gives the same bytes from a source that comes row by row from its top. Only the rows that later results
/// need are kept. For each row: fill `nextRow`, then `addRow`, then `takeResult` while `hasResult`. For this
/// room alone: the constructor may throw std::bad_alloc.
class StreamResampler {
  public:
    StreamResampler(const AxisMapping& x, const AxisMapping& y);

    /// Where the caller writes the next row: 4 bytes for each source pixel.
    std::uint8_t* nextRow() { return row(m_come); }
    void addRow() { ++m_come; }

    bool hasResult() const;
    /// Writes the next target row to `out`, 4 bytes for each pixel.
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

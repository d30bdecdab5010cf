#pragma once

#include "imaging/png/PngFilter.h"
#include "imaging/png/PngOptions.h"

#include <QImage>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

/// A picture's rows as a PNG compresses them: straight colours, filtered, each row after its filter byte.
/// Keeps the raster by reference. Only this room uses it: functions that make rows may throw std::bad_alloc,
/// which `encodePng` turns into OutOfMemory.
class FilteredRows {
  public:
    /// Bytes that are not initialised. The first `size` of them are filled.
    struct Buffer {
        explicit Buffer(std::size_t capacity)
            : bytes(std::make_unique_for_overwrite<std::uint8_t[]>(capacity)) {}

        std::span<const std::uint8_t> filled() const { return {bytes.get(), size}; }

        std::unique_ptr<std::uint8_t[]> bytes;
        std::size_t size = 0;
    };

    /// `raster` is RGBA8888 or RGBA8888_Premultiplied; without an alpha channel in the file it is opaque.
    FilteredRows(const QImage& raster, PngChannels channels)
        : m_raster(raster),
          m_pixelBytes(channels == PngChannels::Rgb ? 3 : 4),
          m_rowBytes(m_pixelBytes * static_cast<std::size_t>(raster.width())) {}

    /// The length in bytes of `rows` filtered rows.
    std::size_t size(int rows) const { return (1 + m_rowBytes) * static_cast<std::size_t>(rows); }

    Buffer all(PngFilterStrategy strategy) const;

    struct Bands {
        int count; ///< two or more
        int rows;  ///< of each
    };
    /// Bands of rows, spread evenly over the picture; all rows of a picture that has no more.
    Buffer sample(PngFilterStrategy strategy, Bands bands) const;

    /// Filters one row after the other.
    class Sequence {
      public:
        /// Starts at row `first`. The row above it is used by the filter but not returned.
        Sequence(const FilteredRows& rows, PngFilterStrategy strategy, int first);

        /// Writes the next row: `size(1)` bytes.
        void next(std::uint8_t* out);

      private:
        const FilteredRows& m_rows;
        PngFilterStrategy m_strategy;
        PngFilter m_filter;
        int m_y;
    };

  private:
    void append(Buffer& buffer, int first, int count, PngFilterStrategy strategy) const;
    void straightRow(int y, std::uint8_t* out) const;

    const QImage& m_raster;
    std::size_t m_pixelBytes;
    std::size_t m_rowBytes;
};
